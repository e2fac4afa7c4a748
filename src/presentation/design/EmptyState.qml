// What stands where a list has nothing to show: a symbol, a title and perhaps one thing to do. Needs symbol and
// title. Reports `activated` when the action is chosen.
import QtQuick
import Tarnvale.Design

Column {
    id: root

    required property string symbol
    required property string title
    property string actionTitle: ""

    signal activated

    spacing: Theme.space10
    topPadding: Theme.space36
    bottomPadding: Theme.space36

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: root.symbol
        size: Theme.size26
        color: Theme.inkTertiary
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, root.width - 2 * Theme.space16)
        horizontalAlignment: Text.AlignHCenter
        text: root.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 3
        elide: Text.ElideRight
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size125
        font.weight: Font.Medium
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    LinkButton {
        anchors.horizontalCenter: parent.horizontalCenter
        title: root.actionTitle
        visible: root.actionTitle !== ""
        onActivated: root.activated()
    }
}
