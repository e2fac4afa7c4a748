// A label and its value, which a button copies. Needs both; reports `copyChosen`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string label
    required property string value
    property bool isCopied: false

    signal copyChosen

    implicitHeight: Math.round(28 * WindowMetrics.scale)

    Text {
        id: name
        anchors.left: parent.left
        anchors.leftMargin: Theme.space4
        anchors.verticalCenter: parent.verticalCenter
        width: Math.round(78 * WindowMetrics.scale)
        text: root.label
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        Accessible.ignored: true
    }
    Text {
        id: words
        anchors.left: name.right
        anchors.leftMargin: Theme.space8
        anchors.right: copy.left
        anchors.rightMargin: Theme.space4
        anchors.verticalCenter: parent.verticalCenter
        text: root.value
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        Accessible.role: Accessible.StaticText
        Accessible.name: root.label + ": " + root.value
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: words.truncated ? root.value : ""
        hovered: hover.hovered && !copy.isHovered
    }
    IconButton {
        id: copy
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        opacity: hover.hovered || activeFocus || root.isCopied ? 1 : 0
        title: root.isCopied ? qsTr("Copied") : qsTr("Copy %1").arg(root.label)
        systemImage: root.isCopied ? "checkmark" : "doc.on.doc"
        tint: root.isCopied ? Theme.success : Theme.inkSecondary
        size: Theme.size11
        onActivated: root.copyChosen()
    }
}
