// The panel's last line: settings, the window's button where there is a window, our name, and the hot key. Needs the
// footer's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PanelFooterController footer

    implicitHeight: PanelMetrics.footerHeight

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.space12 - Theme.space4
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4

        IconButton {
            id: gear
            anchors.verticalCenter: parent.verticalCenter
            title: qsTr("Settings")
            systemImage: "gearshape"
            Accessible.role: Accessible.ButtonMenu
            onActivated: root.footer.requestMenu(gear.mapToGlobal(0, gear.height))
        }
        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.footer.hasWindow
            title: qsTr("Open Tarnvale Window")
            systemImage: "macwindow"
            onActivated: root.footer.openWindow()
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            leftPadding: Theme.space4
            text: qsTr("Tarnvale")
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
            font.weight: Font.Medium
        }
    }
    HotKeyChip {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        caps: root.footer.hotKeyCaps
        note: root.footer.hotKeyNote
        isRecording: root.footer.isRecordingHotKey
        onActivated: root.footer.toggleRecording()
    }
}
