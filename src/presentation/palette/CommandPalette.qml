// The command palette: a field that holds the keyboard, and what its words find. Needs the palette's state, and stands
// on a raised card with round corners, which is its host's. Less room than it asks for shortens the list.
import QtQuick
import Tarnvale.Design
import Tarnvale.Palette

FocusScope {
    id: root

    required property PaletteController controller

    readonly property real grown: Math.max(1, Theme.textScale)
    readonly property int rowHeight: Math.round(44 * grown)
    readonly property int listHeight: controller.rowCount * (rowHeight + Theme.space2) - Theme.space2 + 2 * Theme.space6

    // Brings a row into sight, with the list's inset beyond it.
    function reveal(index: int): void {
        view.positionViewAtIndex(index, ListView.Contain);
        const row = view.itemAtIndex(index);
        if (row)
            view.contentY = Math.min(row.y - Theme.space6, Math.max(view.contentY, row.y + row.height
                                                                    + Theme.space6 - view.height));
    }

    implicitWidth: Math.round(580 * grown)
    implicitHeight: field.height + divider.height
        + (controller.rowCount > 0 ? Math.min(Math.round(360 * grown), listHeight) : nothing.implicitHeight)
    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Command palette")

    Item {
        id: field
        anchors.left: parent.left
        anchors.right: parent.right
        height: Math.round(52 * root.grown)

        Symbol {
            id: symbol
            anchors.left: parent.left
            anchors.leftMargin: Theme.space16
            anchors.verticalCenter: parent.verticalCenter
            name: "command"
            size: Theme.size15
            color: Theme.inkSecondary
        }
        TextInput {
            id: input
            anchors.left: symbol.right
            anchors.leftMargin: Theme.space12
            anchors.right: leave.left
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: parent.verticalCenter
            focus: true
            color: Theme.ink
            selectionColor: Theme.accent
            selectedTextColor: Theme.inkOn
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size15
            maximumLength: 1000
            selectByMouse: true
            clip: true
            Accessible.role: Accessible.EditableText
            Accessible.name: prompt.text
            Accessible.description: root.controller.spoken
            Keys.onPressed: event => event.accepted = root.controller.handleKey(event.key, event.modifiers,
                                                                                event.isAutoRepeat)
            onTextEdited: root.controller.query = text

            Text {
                id: prompt
                anchors.fill: parent
                text: qsTr("Type a command — “open shop”, “kill 3000”, “start stack”…")
                textFormat: Text.PlainText
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
                color: Theme.inkTertiary
                font: input.font
                visible: input.text === "" && input.preeditText === ""
                Accessible.ignored: true
            }
        }
        Keycaps {
            id: leave
            anchors.right: parent.right
            anchors.rightMargin: Theme.space16
            anchors.verticalCenter: parent.verticalCenter
            caps: [qsTr("esc")]
            Accessible.ignored: true
        }
    }
    Divider {
        id: divider
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: field.bottom
    }
    ListView {
        id: view
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.space6
        anchors.rightMargin: Theme.space6
        anchors.top: divider.bottom
        anchors.bottom: parent.bottom
        topMargin: Theme.space6
        bottomMargin: Theme.space6
        visible: root.controller.rowCount > 0
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        spacing: Theme.space2
        model: root.controller.rows
        delegate: PaletteRowView {
            required property int index

            width: view.width
            height: root.rowHeight
            isHighlighted: index === root.controller.highlighted
            isArmed: root.controller.armed === itemId
            onChosen: root.controller.click(itemId)
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Commands")
    }
    ListScroller {
        target: view
        visible: isNeeded && view.visible
    }
    Text {
        id: nothing
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: divider.bottom
        visible: root.controller.rowCount === 0
        padding: Theme.space28
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("No matching commands")
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size13
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Connections {
        target: root.controller
        function onHighlightedChanged(): void {
            root.reveal(root.controller.highlighted);
        }
        function onQueryChanged(): void {
            view.positionViewAtBeginning();
            if (input.text !== root.controller.query)
                input.text = root.controller.query;
        }
    }
}
