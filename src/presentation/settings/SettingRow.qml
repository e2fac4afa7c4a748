// One choice: what it is, perhaps a note beneath, and its control at the trailing edge. Needs the title. What stands
// between `backquotes` in the note is shown as code.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string title
    property string note: ""
    property bool isWide: false // the note goes on beneath the control
    default property alias control: control.data

    readonly property real titleHeight: isWide ? control.implicitHeight : 0 // at least

    width: parent?.width ?? 0
    implicitHeight: Math.max(texts.implicitHeight, control.implicitHeight)

    Column {
        id: texts
        anchors.left: parent.left
        anchors.right: control.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space3

        Text {
            width: parent.width
            height: Math.max(implicitHeight, root.titleHeight)
            verticalAlignment: Text.AlignVCenter
            text: root.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size13
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: root.isWide ? root.width : parent.width
            visible: root.note !== ""
            text: root.note
            textFormat: text.includes("`") ? Text.MarkdownText : Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            lineHeight: 1.1
            Accessible.role: Accessible.StaticText
            Accessible.name: root.note
        }
    }
    Row {
        id: control
        anchors.right: parent.right
        y: root.isWide ? 0 : Math.round((root.height - height) / 2)
    }
}
