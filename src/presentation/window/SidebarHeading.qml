// The heading of a group of sections. Needs the list's section, which is its text.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string section

    height: section === "" ? 0 : Math.round(34 * WindowMetrics.scale)
    visible: section !== ""

    Text {
        anchors.left: parent.left
        anchors.leftMargin: Theme.space8
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space5
        text: root.section
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.inkTertiary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
