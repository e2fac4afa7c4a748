// A port's number as a small pill. Needs the text; a prominent one is darker.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string text
    property bool prominent: false
    property string label: text // for screen readers

    implicitWidth: Math.ceil(number.implicitWidth) + 2 * Theme.space7
    implicitHeight: Theme.controlHeight - Theme.space2
    radius: Theme.radius6
    color: prominent ? Theme.selectedFill : Theme.chipFill
    Accessible.role: Accessible.StaticText
    Accessible.name: label

    Text {
        id: number
        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        color: root.prominent ? Theme.ink : Theme.inkSecondary
        font.family: Theme.monoFamily
        font.pixelSize: Theme.size115
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
}
