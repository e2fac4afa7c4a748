// The title of a block of the inspector, with what belongs to its right end. Needs the title.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string title
    property string detail: ""
    default property alias trailing: row.data

    implicitHeight: Math.max(name.implicitHeight, row.implicitHeight, Theme.controlHeight)

    Text {
        id: name
        anchors.left: parent.left
        anchors.leftMargin: Theme.space2
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        textFormat: Text.PlainText
        color: Theme.ink
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size125
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Text {
        anchors.left: name.right
        anchors.leftMargin: Theme.space8
        anchors.right: row.left
        anchors.rightMargin: Theme.space6
        anchors.baseline: name.baseline
        text: root.detail
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
    }
    Row {
        id: row
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4
    }
}
