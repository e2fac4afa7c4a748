// What one does with a port most: the one thing that its kind is for, and a line of others. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Column {
    id: root

    required property InspectorController inspector
    readonly property bool isCopied: inspector.copiedField === "address"
    readonly property real half: (width - more.width - 2 * line.spacing) / 2

    spacing: Theme.space6

    PushButton {
        width: parent.width
        visible: root.inspector.facts.isWeb
        kind: "prominent"
        symbol: "safari"
        title: qsTr("Open in Browser")
        onActivated: root.inspector.openInBrowser()
    }
    Row {
        id: line
        width: parent.width
        spacing: Theme.space6

        PushButton {
            width: restart.visible ? root.half : parent.width - more.width - line.spacing
            symbol: root.isCopied ? "checkmark" : "doc.on.doc"
            title: root.isCopied ? qsTr("Copied") : root.inspector.facts.copyTitle
            onActivated: root.inspector.copyAddress()
        }
        PushButton {
            id: restart
            width: root.half
            visible: root.inspector.facts.restartTitle !== ""
            symbol: "arrow.clockwise"
            title: root.inspector.facts.restartTitle
            onActivated: root.inspector.restart()
        }
        IconButton {
            id: more
            title: qsTr("More actions")
            systemImage: "ellipsis"
            isFilled: true
            implicitWidth: Theme.buttonHeight
            Accessible.role: Accessible.ButtonMenu
            onActivated: root.inspector.requestMenu(more.mapToGlobal(0, more.height))
        }
    }
}
