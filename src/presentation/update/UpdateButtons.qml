// What can be done in each phase of an update; the usual thing stands last and has the keyboard. Needs the state of
// the window.
import QtQuick
import Tarnvale.Design
import Tarnvale.Update

FocusScope {
    id: root

    required property UpdateViewController controller
    readonly property int phase: controller.phase

    implicitHeight: row.height
    onPhaseChanged: Qt.callLater(root.focusUsual)
    Component.onCompleted: root.focusUsual()

    LinkButton {
        anchors.left: parent.left
        anchors.verticalCenter: row.verticalCenter
        visible: root.controller.hasNotesPage && root.phase !== UpdateViewController.Failed
            && root.phase !== UpdateViewController.Ready
        title: qsTr("More in the Browser")
        onActivated: root.controller.openNotes()
    }
    Row {
        id: row
        anchors.right: parent.right
        spacing: Theme.space8

        PushButton {
            visible: root.phase === UpdateViewController.Ready
            title: qsTr("Show in Folder")
            onActivated: root.controller.showInFolder()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Available || root.phase === UpdateViewController.Ready
            title: qsTr("Later")
            onActivated: root.controller.close()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Failed
            title: qsTr("Close")
            onActivated: root.controller.close()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Idle || root.phase === UpdateViewController.Checking
                || root.phase === UpdateViewController.Downloading || root.phase === UpdateViewController.Verifying
            title: qsTr("Cancel")
            onActivated: root.controller.cancel()
        }
        PushButton {
            visible: root.phase === UpdateViewController.UpToDate
            kind: "prominent"
            title: qsTr("OK")
            onActivated: root.controller.close()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Available
            kind: "prominent"
            title: qsTr("Download")
            onActivated: root.controller.download()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Ready
            kind: "prominent"
            title: qsTr("Open Installer")
            onActivated: root.controller.openInstaller()
        }
        PushButton {
            visible: root.phase === UpdateViewController.Failed
            kind: "prominent"
            title: qsTr("Try Again")
            onActivated: root.controller.retry()
        }
    }

    function focusUsual(): void {
        for (let i = row.children.length - 1; i >= 0; --i)
            if (row.children[i].visible) {
                row.children[i].forceActiveFocus();
                return;
            }
    }
}
