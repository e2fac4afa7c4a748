// The port's details, line by line; each can be copied. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Card {
    id: root

    required property InspectorController inspector

    padding: Theme.space10
    spacing: 0

    Repeater {
        model: root.inspector.details

        DetailLineView {
            width: parent.width
            isCopied: root.inspector.copiedField === label
            onCopyChosen: root.inspector.copyField(label, value)
        }
    }
}
