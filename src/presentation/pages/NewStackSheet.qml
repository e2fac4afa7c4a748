// What stands on the sheet that makes a stack of a folder: its name, the commands to choose from, a field for another
// one. Needs its state. Who shows it closes it on Esc by `cancel()`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

FocusScope {
    id: root

    required property NewStackController controller
    readonly property real padding: Theme.space20
    readonly property real listHeight: Math.min(list.count, PageMetrics.mostSuggestions) * PageMetrics.suggestionHeight

    focus: true
    implicitWidth: PageMetrics.sheetWidth
    implicitHeight: above.implicitHeight + (list.count > 0 ? Theme.space6 + listHeight : 0) + below.implicitHeight
        + Theme.space12 + 2 * padding
    Component.onCompleted: {
        name.input.forceActiveFocus();
        name.input.selectAll();
    }

    Column {
        id: above
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: root.padding
        spacing: Theme.space16

        Item {
            width: parent.width
            height: PageMetrics.sheetTile

            SymbolTile {
                id: tile
                size: PageMetrics.sheetTile
                anchors.left: parent.left
                symbolSize: Theme.size17
                symbol: "square.stack.3d.up.fill"
                tint: Theme.purple
            }
            Column {
                anchors.left: tile.right
                anchors.leftMargin: Theme.space12
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.space1

                Text {
                    width: parent.width
                    text: qsTr("New Stack")
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.ink
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size16
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                Text {
                    id: path
                    width: parent.width
                    text: root.controller.folder
                    textFormat: Text.PlainText
                    elide: Text.ElideMiddle
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.inkSecondary
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size115
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text

                    HoverHandler {
                        id: pathHover
                    }
                    HoverTip {
                        text: path.truncated ? root.controller.folder : ""
                        hovered: pathHover.hovered
                    }
                }
            }
        }
        Column {
            width: parent.width
            spacing: Theme.space6

            Text {
                text: qsTr("Name")
                textFormat: Text.PlainText
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            TextField {
                id: name
                width: parent.width
                prompt: ""
                label: qsTr("Name")
                text: root.controller.name
                onEdited: text => root.controller.name = text
                onAccepted: root.controller.create()
            }
        }
        Column {
            width: parent.width
            spacing: Theme.space2

            Text {
                width: parent.width
                text: root.controller.problem
                visible: text !== ""
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.dangerText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Text { // keeps its line while the folder is read
                width: parent.width
                text: root.controller.heading
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size115
                font.weight: Font.Medium
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
    }
    ListView {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: root.padding - Theme.space10
        anchors.rightMargin: root.padding - Theme.space10
        anchors.top: above.bottom
        anchors.topMargin: Theme.space6
        anchors.bottom: below.top
        anchors.bottomMargin: Theme.space12
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        currentIndex: -1 // a current row would take the focus from the others
        model: root.controller.suggestions
        Accessible.role: Accessible.List
        Accessible.name: root.controller.heading
        delegate: SuggestionLine {
            width: list.width
            onToggled: isTicked => root.controller.setTicked(commandId, isTicked)
        }

        Connections {
            target: root.controller
            function onCustomAdded(row: int): void {
                list.positionViewAtIndex(row, ListView.Contain);
            }
        }
    }
    ListScroller {
        target: list
    }
    Column {
        id: below
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: root.padding
        spacing: Theme.space12

        Item {
            width: parent.width
            height: custom.implicitHeight

            TextField {
                id: custom
                anchors.left: parent.left
                anchors.right: add.left
                anchors.rightMargin: Theme.space8
                isMono: true
                prompt: qsTr("Another command, e.g. php artisan horizon")
                text: root.controller.custom
                onEdited: text => root.controller.custom = text
                onAccepted: root.controller.addCustom()
            }
            PushButton {
                id: add
                anchors.right: parent.right
                title: qsTr("Add")
                onActivated: root.controller.addCustom()
            }
        }
        Text {
            width: parent.width
            text: qsTr("Commands run in a login shell from the project folder; output goes to Tarnvale's logs.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.space8

            PushButton {
                title: qsTr("Cancel")
                onActivated: root.controller.cancel()
            }
            PushButton {
                title: qsTr("Create Stack")
                kind: "prominent"
                enabled: root.controller.canCreate
                onActivated: root.controller.create()
            }
        }
    }
}
