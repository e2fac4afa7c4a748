// A field to search with: symbol, text, a button that clears it, and the count of what was found. Needs the prompt.
// `text` is the field's own; `input` is its editor, whose keys may be forwarded. Reports `edited` for each change
// that the user makes, `cleared` for the button.
import QtQuick
import Tarnvale.Design

RoundRect {
    id: root

    required property string prompt
    property alias text: input.text
    property alias input: input
    property int count: -1
    property string countTip: ""
    property string clearTitle: qsTr("Clear search")
    property list<Item> keyTargets // see every key before the field does

    signal edited(string text)
    signal cleared

    implicitHeight: Theme.fieldHeight
    implicitWidth: 240
    radius: Theme.radius9
    color: Theme.fieldFill
    strokeColor: Theme.panelStroke
    strokeWidth: Theme.highContrast ? Theme.stroke : 0

    Symbol {
        id: glass
        anchors.left: parent.left
        anchors.leftMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: Theme.size12
        color: Theme.inkTertiary
    }
    TextInput {
        id: input
        anchors.left: glass.right
        anchors.leftMargin: Theme.space8
        anchors.right: trailing.left
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.ink
        selectionColor: Theme.accent
        selectedTextColor: Theme.inkOn
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size13
        maximumLength: 1000
        selectByMouse: true
        clip: true
        activeFocusOnTab: true
        Accessible.role: Accessible.EditableText
        Accessible.name: root.prompt
        Keys.forwardTo: root.keyTargets
        onTextEdited: root.edited(text)

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
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4

        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            title: root.clearTitle
            systemImage: "xmark.circle.fill"
            size: Theme.size12
            tint: Theme.inkTertiary
            visible: input.text !== ""
            onActivated: {
                input.clear();
                input.forceActiveFocus();
                root.cleared();
            }
        }
        CountPill {
            anchors.verticalCenter: parent.verticalCenter
            count: Math.max(0, root.count)
            tip: root.countTip
            visible: root.count >= 0
        }
    }
    HoverHandler {
        cursorShape: Qt.IBeamCursor
        margin: 0
    }
    TapHandler {
        onTapped: input.forceActiveFocus()
    }
}
