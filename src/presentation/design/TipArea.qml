// Shows a tool tip while the pointer is over it. Needs the text.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string text

    HoverHandler {
        id: hover
    }
    HoverTip {
        text: root.text
        hovered: hover.hovered
    }
}
