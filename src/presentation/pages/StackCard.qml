// A stack with its commands, the button that starts them and the one that deletes the stack. Needs the roles of the
// stacks' cards; reports what the user chose.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Card {
    id: root

    required property string stackId
    required property string name
    required property string progress
    required property list<string> commands
    required property var areUp
    required property string folder
    required property string folderTip
    required property bool isRunning
    required property bool isArmed

    signal startChosen
    signal deleteChosen

    spacing: Theme.space12
    padding: Theme.space16
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + progress

    Item {
        width: parent.width
        implicitHeight: PageMetrics.tile

        SymbolTile {
            id: tile
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            size: PageMetrics.tile
            symbolSize: Theme.size13
            symbol: "square.stack.3d.up.fill"
            tint: Theme.purple
        }
        Column {
            anchors.left: tile.right
            anchors.leftMargin: Theme.space12
            anchors.right: start.left
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space1

            Text {
                id: heading
                width: parent.width
                text: root.name
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.ink
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size15
                font.weight: Font.DemiBold
                Accessible.ignored: true

                HoverHandler {
                    id: nameHover
                }
                HoverTip {
                    text: heading.truncated ? root.name : ""
                    hovered: nameHover.hovered
                }
            }
            Text {
                width: parent.width
                text: root.progress
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
                Accessible.ignored: true
            }
        }
        PushButton {
            id: start
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            title: root.isRunning ? qsTr("Running") : qsTr("Start")
            symbol: root.isRunning ? "checkmark" : "play.fill"
            kind: root.isRunning ? "plain" : "prominent"
            Accessible.description: root.name
            onActivated: root.startChosen()
        }
    }
    Column {
        width: parent.width

        Repeater {
            model: root.commands

            Item {
                id: line

                required property string modelData
                required property int index
                readonly property bool isUp: root.areUp[index] ?? false

                width: parent ? parent.width : 0
                height: PageMetrics.commandHeight
                Accessible.role: Accessible.StaticText
                Accessible.name: isUp ? qsTr("%1, running").arg(modelData) : modelData

                RoundRect {
                    id: dot
                    anchors.left: parent.left
                    anchors.leftMargin: (PageMetrics.tile - width) / 2
                    anchors.verticalCenter: parent.verticalCenter
                    width: Theme.space7
                    height: width
                    radius: width / 2
                    color: line.isUp ? Theme.success : Theme.wash(Theme.ink, 0.2)
                }
                Text {
                    id: command
                    anchors.left: parent.left
                    anchors.leftMargin: PageMetrics.tile + Theme.space12
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.modelData
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.ink
                    font.family: Theme.monoFamily
                    font.pixelSize: Theme.size115
                    Accessible.ignored: true
                }
                HoverHandler {
                    id: hover
                }
                HoverTip {
                    text: command.truncated ? line.modelData : ""
                    hovered: hover.hovered
                }
            }
        }
    }
    Item {
        width: parent.width
        implicitHeight: remove.implicitHeight

        Symbol {
            id: symbol
            anchors.left: parent.left
            anchors.leftMargin: (PageMetrics.tile - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            visible: root.folder !== ""
            name: "folder"
            size: Theme.size11
            color: Theme.inkTertiary
        }
        Text {
            anchors.left: parent.left
            anchors.leftMargin: PageMetrics.tile + Theme.space12
            anchors.right: remove.left
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: parent.verticalCenter
            visible: root.folder !== ""
            text: root.folder
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignLeft
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.role: Accessible.StaticText
            Accessible.name: root.folderTip

            HoverHandler {
                id: folderHover
            }
            HoverTip {
                text: root.folderTip
                hovered: folderHover.hovered
            }
        }
        ArmedButton {
            id: remove
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            title: qsTr("Delete")
            armedTitle: qsTr("Click to delete")
            armed: root.isArmed
            Accessible.description: root.name
            onActivated: root.deleteChosen()
        }
    }
}
