// One run of a server: what ran where that differs in its group, when, and how long. Needs all of them.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property string name // empty: not shown
    required property string range
    required property string rangeTip
    required property string length
    required property bool isRunning

    readonly property real nameShare: name === "" ? 0 : Math.round((width - PageMetrics.lengthWidth) * 0.45)

    height: PageMetrics.sessionHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: [name, range, length, isRunning ? qsTr("Running") : ""].filter(part => part !== "").join(", ")

    Text {
        id: what
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: root.nameShare
        rightPadding: Theme.space12
        visible: root.name !== ""
        text: root.name
        textFormat: Text.PlainText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size12
        Accessible.ignored: true

        HoverHandler {
            id: nameHover
        }
        HoverTip {
            text: what.truncated ? root.name : ""
            hovered: nameHover.hovered
        }
    }
    Text {
        anchors.left: parent.left
        anchors.leftMargin: root.nameShare
        anchors.right: parent.right
        anchors.rightMargin: PageMetrics.lengthWidth
        anchors.verticalCenter: parent.verticalCenter
        text: root.range
        textFormat: Text.PlainText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size115
        Accessible.ignored: true

        HoverHandler {
            id: rangeHover
        }
        HoverTip {
            text: root.rangeTip
            hovered: rangeHover.hovered
        }
    }
    Text {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: PageMetrics.lengthWidth
        horizontalAlignment: Text.AlignRight
        text: root.length
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: root.isRunning ? Theme.success : Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size115
        font.weight: root.isRunning ? Font.Medium : Font.Normal
        Accessible.ignored: true
    }
}
