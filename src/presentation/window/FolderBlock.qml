// Where the process works. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Column {
    id: root

    required property InspectorController inspector

    spacing: Theme.space6

    BlockTitle {
        width: parent.width
        title: qsTr("Folder")
    }
    Item {
        width: parent.width
        height: reveal.height

        Symbol {
            id: mark
            anchors.left: parent.left
            anchors.leftMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter
            name: "folder.fill"
            size: Theme.size13
            color: Theme.info
        }
        Text {
            id: path
            anchors.left: mark.right
            anchors.leftMargin: Theme.space8
            anchors.right: reveal.left
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            text: root.inspector.facts.folder
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12

            HoverHandler {
                id: hover
            }
            HoverTip {
                text: path.truncated ? path.text : ""
                hovered: hover.hovered
            }
        }
        PushButton {
            id: reveal
            anchors.right: parent.right
            isSmall: true
            title: qsTr("Reveal")
            onActivated: root.inspector.revealFolder()
        }
    }
}
