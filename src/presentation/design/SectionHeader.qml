// The head of a section in a list: its title in capitals and the count of its rows. Needs both; a count below 0 isn't
// shown. It has a ground, because rows scroll beneath it.
import QtQuick

Rectangle {
    id: root

    required property string title
    property int count: -1
    property real inset: Theme.space8

    implicitHeight: Math.round(24 * Math.max(1, Theme.textScale))
    implicitWidth: line.implicitWidth + 2 * inset
    color: Theme.surface
    Accessible.role: Accessible.Heading
    Accessible.name: count < 0 ? title : title + ", " + count

    Row {
        id: line
        anchors.left: parent.left
        anchors.leftMargin: root.inset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space6

        Text {
            text: root.title
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size10
            font.weight: Font.DemiBold
            font.capitalization: Font.AllUppercase
            font.letterSpacing: Theme.tracking
            Accessible.ignored: true
        }
        Text {
            text: root.count
            visible: root.count >= 0
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size10
            font.weight: Font.Medium
            Accessible.ignored: true
        }
    }
}
