// The full command line of the process. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Column {
    id: root

    required property InspectorController inspector
    readonly property bool isCopied: inspector.copiedField === "command"

    spacing: Theme.space6

    BlockTitle {
        width: parent.width
        title: qsTr("Command")

        IconButton {
            title: root.isCopied ? qsTr("Copied") : qsTr("Copy %1").arg(qsTr("Command"))
            systemImage: root.isCopied ? "checkmark" : "doc.on.doc"
            tint: root.isCopied ? Theme.success : Theme.inkSecondary
            size: Theme.size11
            onActivated: root.inspector.copyField("command", root.inspector.facts.command)
        }
    }
    RoundRect {
        width: parent.width
        height: words.implicitHeight + 2 * Theme.space10
        radius: Theme.radius8
        color: Theme.fieldFill

        TextEdit {
            id: words
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: Theme.space10
            anchors.verticalCenter: parent.verticalCenter
            readOnly: true
            selectByMouse: true
            text: root.inspector.facts.command
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            color: Theme.ink
            selectionColor: Theme.accent
            selectedTextColor: Theme.inkOn
            font.family: Theme.monoFamily
            font.pixelSize: Theme.size115
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
