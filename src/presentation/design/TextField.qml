// A line of text to edit. Needs the prompt, which is also its name unless `label` says better. `text` is the field's
// own. Reports `edited` for each change that the user makes, `accepted` for Return.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string prompt
    property string label: prompt
    property alias text: input.text
    property alias input: input
    property bool isMono: false

    signal edited(text: string)
    signal accepted

    implicitHeight: Theme.buttonHeight
    implicitWidth: 200
    radius: Theme.radius7
    color: Theme.fieldFill
    strokeColor: input.activeFocus ? Theme.focusRing : Theme.capStroke
    strokeWidth: input.activeFocus ? Theme.space2 : Theme.stroke

    TextInput {
        id: input
        anchors.fill: parent
        anchors.leftMargin: Theme.space9
        anchors.rightMargin: Theme.space9
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.ink
        selectionColor: Theme.accent
        selectedTextColor: Theme.inkOn
        font.family: root.isMono ? Theme.monoFamily : Theme.fontFamily
        font.pixelSize: root.isMono ? Theme.size12 : Theme.size125
        maximumLength: 10000
        selectByMouse: true
        clip: true
        activeFocusOnTab: true
        Accessible.role: Accessible.EditableText
        Accessible.name: root.label
        onTextEdited: root.edited(text)
        onAccepted: root.accepted()

        Text {
            anchors.fill: parent
            text: root.prompt
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            color: Theme.inkTertiary
            font: input.font
            visible: input.text === "" && input.preeditText === ""
            Accessible.ignored: true
        }
    }
    HoverHandler {
        cursorShape: Qt.IBeamCursor
        margin: 0
    }
}
