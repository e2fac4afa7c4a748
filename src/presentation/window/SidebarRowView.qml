// One section of the window in the sidebar. Needs the model's roles; reports `chosen`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string itemKey
    required property string label
    required property string symbol
    required property int count
    property bool isCurrent: false
    property bool hasFocus: false

    signal chosen

    height: WindowMetrics.sidebarRow
    Accessible.role: Accessible.ListItem
    Accessible.name: count > 0 ? label + ", " + count : label
    Accessible.selectable: true
    Accessible.selected: isCurrent
    Accessible.onPressAction: root.chosen()

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius7
        color: root.isCurrent ? Theme.sidebarSelected : Theme.hoverFill
        visible: root.isCurrent || hover.hovered
        strokeColor: Theme.focusRing
        strokeWidth: root.hasFocus ? Theme.space2 : 0
    }
    Symbol {
        id: mark
        anchors.left: parent.left
        anchors.leftMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        size: Theme.size13
        color: root.isCurrent ? Theme.link : Theme.inkSecondary
    }
    Text {
        anchors.left: mark.right
        anchors.leftMargin: Theme.space9
        anchors.right: badge.left
        anchors.rightMargin: Theme.space6
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size13
        font.weight: root.isCurrent ? Font.DemiBold : Font.Normal
        Accessible.ignored: true
    }
    Text {
        id: badge
        anchors.right: parent.right
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        text: root.count > 0 ? root.count : ""
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: root.chosen()
    }
}
