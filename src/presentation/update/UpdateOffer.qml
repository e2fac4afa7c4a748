// A version that is offered: its name, what is known of it, the progress of its download, and its notes. Needs the
// state of the window.
import QtQuick
import Tarnvale.Design
import Tarnvale.Update

Item {
    id: root

    required property UpdateViewController controller
    readonly property bool isUnderWay: controller.phase === UpdateViewController.Downloading
        || controller.phase === UpdateViewController.Verifying

    SymbolTile {
        id: tile
        size: Theme.space36 + Theme.space8
        symbol: root.controller.symbol
        tint: Theme.blue
    }
    Column {
        id: texts
        anchors.left: tile.right
        anchors.leftMargin: Theme.space14
        anchors.right: parent.right
        anchors.verticalCenter: tile.verticalCenter
        spacing: Theme.space3

        Text {
            width: parent.width
            text: root.controller.title
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size15
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: root.controller.message
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    UpdateProgress {
        id: bar
        anchors.left: parent.left
        anchors.right: parent.right
        y: Math.max(tile.height, texts.y + texts.height) + Theme.space12
        visible: root.isUnderWay
        value: root.controller.progress
        title: root.controller.title
    }
    UpdateNotes {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: bar.bottom
        anchors.topMargin: Theme.space12
        anchors.bottom: parent.bottom
        text: root.controller.notes
    }
}
