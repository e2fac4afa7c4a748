// The end of the server's output as it grows, or why it can't be had. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Column {
    id: root

    required property InspectorController inspector
    readonly property LogDocument log: inspector.log
    readonly property bool isAtEnd: view.contentY >= view.contentHeight - view.height - Theme.space24

    spacing: Theme.space6

    BlockTitle {
        width: parent.width
        title: qsTr("Logs")
        detail: root.inspector.facts.logName

        IconButton {
            visible: root.log.isFollowing
            title: root.log.isPaused ? qsTr("Resume") : qsTr("Pause")
            systemImage: root.log.isPaused ? "play.fill" : "pause.fill"
            size: Theme.size11
            onActivated: root.log.togglePaused()
        }
        IconButton {
            visible: root.log.isFollowing && root.inspector.facts.isLogFile
            title: qsTr("Open in Console")
            systemImage: "arrow.up.forward.app"
            size: Theme.size12
            onActivated: root.inspector.openLog()
        }
    }
    Column {
        width: parent.width
        spacing: Theme.space8
        visible: root.inspector.facts.logName === ""

        Text {
            width: parent.width
            leftPadding: Theme.space2
            wrapMode: Text.Wrap
            text: qsTr("Tarnvale can't read the output of a process it didn't start.")
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
        }
        PushButton {
            visible: root.inspector.facts.canCaptureLogs
            isSmall: true
            title: qsTr("Restart to Capture Logs")
            onActivated: root.inspector.restart()
        }
    }
    RoundRect {
        width: parent.width
        height: WindowMetrics.log
        visible: root.inspector.facts.logName !== ""
        radius: Theme.radius10
        color: Theme.console
        strokeColor: Theme.cardStroke
        strokeWidth: Theme.stroke

        Flickable {
            id: view
            anchors.fill: parent
            anchors.margins: Theme.space10
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            contentWidth: width
            contentHeight: editor.implicitHeight
            onContentHeightChanged: if (!editor.activeFocus || editor.selectedText === "")
                contentY = Math.max(0, contentHeight - height)

            TextEdit {
                id: editor
                width: view.width
                readOnly: true
                selectByMouse: true
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.WrapAnywhere
                color: Theme.consoleInk
                selectionColor: Theme.accent
                selectedTextColor: Theme.inkOn
                font.family: Theme.monoFamily
                font.pixelSize: Theme.size105
                Accessible.role: Accessible.EditableText
                Accessible.name: qsTr("Logs")
                Accessible.readOnly: true
                Component.onCompleted: {
                    root.log.ink = Qt.binding(() => Theme.consoleInk);
                    root.log.warning = Qt.binding(() => Theme.consoleWarning);
                    root.log.error = Qt.binding(() => Theme.consoleError);
                    root.log.document = textDocument;
                }
                Component.onDestruction: root.log.document = null
            }
        }
        ListScroller {
            target: view
        }
        Text {
            anchors.centerIn: parent
            visible: root.log.isEmpty
            text: qsTr("Waiting for output…")
            color: Theme.consoleFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
        }
    }
}
