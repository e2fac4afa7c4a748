// A shortcut as key caps, one a key. Needs the words on the caps, as in ["Ctrl", "Shift", "P"].
import QtQuick
import Tarnvale.Design

Row {
    id: root

    required property list<string> caps

    spacing: Theme.space3
    Accessible.role: Accessible.StaticText
    Accessible.name: root.caps.join("+")

    Repeater {
        model: root.caps

        RoundRect {
            id: cap

            required property string modelData

            width: Math.max(height, Math.ceil(label.implicitWidth) + 2 * Theme.space5)
            height: Theme.controlHeight - Theme.space4
            radius: Theme.radius5
            color: Theme.capFill
            strokeColor: Theme.capStroke
            strokeWidth: Theme.stroke

            Text {
                id: label
                anchors.centerIn: parent
                text: cap.modelData
                textFormat: Text.PlainText
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size105
                font.weight: Font.Medium
                Accessible.ignored: true
            }
        }
    }
}
