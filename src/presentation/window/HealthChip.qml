// How a server answers, as a chip: "404" in orange. Needs the text and the name of the colour.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string text
    required property string tint
    property string tip: ""
    readonly property color ink: Appearance.legible(Theme.tint(tint), Theme.inspector, 4.5)

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * Theme.space7
    implicitHeight: Math.round(19 * WindowMetrics.scale)
    radius: Theme.radius5
    color: Theme.wash(ink, 0.14)
    Accessible.role: Accessible.StaticText
    Accessible.name: tip !== "" ? tip : text

    Text {
        id: label
        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        color: root.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: root.tip
        hovered: hover.hovered
    }
}
