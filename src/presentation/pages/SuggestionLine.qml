// A command that the sheet offers, with its box to tick. Needs the roles of the suggestions; reports `toggled`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property string commandId
    required property string args
    required property string source
    required property bool isTicked

    signal toggled(isTicked: bool)

    implicitHeight: PageMetrics.suggestionHeight

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius7
        color: Theme.hoverFill
        visible: hover.hovered
    }
    HoverHandler {
        id: hover
    }
    TapHandler { // the box has its own
        onTapped: eventPoint => {
            if (!box.contains(box.mapFromItem(root, eventPoint.position)))
                root.toggled(!root.isTicked);
        }
    }
    CheckBox {
        id: box
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        title: root.args
        checked: root.isTicked
        Accessible.description: root.source
        onToggled: checked => root.toggled(checked)
    }
    Text {
        id: command
        anchors.left: box.right
        anchors.leftMargin: Theme.space10
        anchors.right: origin.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: root.args
        textFormat: Text.PlainText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        color: Theme.ink
        font.family: Theme.monoFamily
        font.pixelSize: Theme.size12
        Accessible.ignored: true
    }
    Text {
        id: origin
        anchors.right: parent.right
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        text: root.source
        textFormat: Text.PlainText
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        Accessible.ignored: true
    }
    HoverTip {
        text: command.truncated ? root.args : ""
        hovered: hover.hovered
    }
}
