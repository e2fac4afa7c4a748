// What can be done with a row at a press: open, copy, the menu, and stop in two steps. Needs the row's facts and words;
// reports what was chosen.
import QtQuick
import Tarnvale.Design

Row {
    id: root

    required property bool isWeb
    required property bool isArmed
    required property bool isCopied
    required property string copyTip
    required property string stopTip
    required property string confirmTitle

    signal openChosen
    signal copyChosen
    signal stopChosen
    signal menuChosen(item: Item, x: real, y: real)

    IconButton {
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isWeb
        title: qsTr("Open in Browser")
        systemImage: "safari"
        onActivated: root.openChosen()
    }
    IconButton {
        anchors.verticalCenter: parent.verticalCenter
        title: root.isCopied ? qsTr("Copied") : root.copyTip
        systemImage: root.isCopied ? "checkmark" : "doc.on.doc"
        tint: root.isCopied ? Theme.success : Theme.inkSecondary
        onActivated: root.copyChosen()
    }
    IconButton {
        id: more
        anchors.verticalCenter: parent.verticalCenter
        title: qsTr("More actions")
        systemImage: "ellipsis"
        Accessible.role: Accessible.ButtonMenu
        onActivated: root.menuChosen(more, 0, more.height)
    }
    Item {
        width: Theme.space2
        height: Theme.space2
    }
    IconButton {
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.isArmed
        title: root.stopTip
        systemImage: "xmark"
        onActivated: root.stopChosen()
    }
    ArmedButton {
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isArmed
        title: root.confirmTitle
        armedTitle: root.confirmTitle
        armed: true
        armedTip: qsTr("Click again to confirm")
        onActivated: root.stopChosen()
    }
}
