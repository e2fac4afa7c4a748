// The head of a section of ports, with its symbol. Needs the sections with their symbols and the counts of their rows; has
// a ground, because rows scroll beneath it.
import QtQuick
import Tarnvale.Design

Rectangle {
    id: root

    required property string section
    required property list<string> sections
    required property list<string> symbols
    required property list<int> counts
    readonly property int count: counts[sections.indexOf(section)] ?? 0

    color: Theme.page
    Accessible.role: Accessible.Heading
    Accessible.name: section + ", " + count

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space6
        spacing: Theme.space6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbols[root.sections.indexOf(root.section)] ?? ""
            size: Theme.size115
            color: Theme.inkSecondary
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.section
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.count
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size115
            Accessible.ignored: true
        }
    }
}
