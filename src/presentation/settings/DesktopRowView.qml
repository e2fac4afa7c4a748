// What the desktop offers of one kind, with a mark that tells whether it is there. Needs the roles of the desktop's
// rows.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string symbol
    required property string name
    required property string found
    required property string advice
    required property bool isMissing
    required property bool isKnown

    implicitHeight: Math.max(heading.implicitHeight + (isMissing ? hint.implicitHeight + Theme.space3 : 0),
                             Theme.controlHeight)
    Accessible.role: Accessible.StaticText
    Accessible.name: name + ": " + found + (isMissing ? ". " + advice : "")

    Symbol {
        id: sign
        anchors.left: parent.left
        anchors.verticalCenter: heading.verticalCenter
        name: root.symbol
        size: Theme.size13
        color: Theme.inkSecondary
    }
    Item {
        id: heading
        anchors.left: sign.right
        anchors.leftMargin: Theme.space10
        anchors.right: parent.right
        y: root.isMissing ? 0 : Math.round((root.height - height) / 2)
        implicitHeight: Math.max(label.implicitHeight, state.implicitHeight)

        Text {
            id: label
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: root.name
            textFormat: Text.PlainText
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            Accessible.ignored: true
        }
        Text {
            id: state
            anchors.left: label.right
            anchors.leftMargin: Theme.space16
            anchors.right: mark.left
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: LayoutMirroring.enabled ? Text.AlignLeft : Text.AlignRight
            text: root.found
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
            Accessible.ignored: true

            HoverHandler {
                id: hover
            }
            HoverTip {
                text: state.truncated ? root.found : ""
                hovered: hover.hovered
            }
        }
        Symbol {
            id: mark
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            opacity: root.isKnown ? 1 : 0
            name: root.isMissing ? "exclamationmark.triangle.fill" : "checkmark"
            size: Theme.size12
            color: root.isMissing ? Theme.warning : Theme.success
        }
    }
    Text {
        id: hint
        anchors.left: heading.left
        anchors.right: parent.right
        anchors.rightMargin: mark.width + Theme.space8
        anchors.top: heading.bottom
        anchors.topMargin: Theme.space3
        visible: root.isMissing
        text: root.advice
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        lineHeight: 1.1
        Accessible.ignored: true
    }
}
