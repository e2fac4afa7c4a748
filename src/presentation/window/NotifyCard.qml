// Whether the user is told when the port goes. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Card {
    id: root

    required property InspectorController inspector

    spacing: Theme.space4

    Item {
        width: parent.width
        height: Math.max(name.implicitHeight, toggle.height)

        Text {
            id: name
            anchors.left: parent.left
            anchors.right: toggle.left
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Notify when it stops")
            elide: Text.ElideRight
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Switch {
            id: toggle
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            title: name.text
            checked: root.inspector.facts.isWatched
            onToggled: checked => root.inspector.setWatched(checked)
        }
    }
    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: root.inspector.facts.watchNote
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
    }
}
