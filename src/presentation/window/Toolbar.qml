// The line above every page: the sidebar's switch, the page's name with its count, the search, the menu "More" and the
// refresh. Needs the window's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Rectangle {
    id: root

    required property MainViewController view
    readonly property bool isSearching: search.input.activeFocus

    signal searchLeft // towards the page

    function focusSearch(): void {
        search.input.forceActiveFocus();
        search.input.selectAll();
    }
    /// From the search into what it found, where something is to be selected then.
    function enterPage(): void {
        root.searchLeft();
        if (root.view.listsPorts && root.view.ports.selectedIndex < 0)
            root.view.ports.moveSelection(1);
    }

    color: Theme.page

    IconButton {
        id: sidebarSwitch
        anchors.left: parent.left
        anchors.leftMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        title: root.view.isSidebarShown ? qsTr("Hide sidebar (⌃⌘S)") : qsTr("Show sidebar (⌃⌘S)")
        systemImage: "sidebar.left"
        size: Theme.size15
        onActivated: root.view.toggleSidebar()
    }
    Column {
        anchors.left: sidebarSwitch.right
        anchors.leftMargin: Theme.space10
        anchors.right: search.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter

        Text {
            width: parent.width
            text: root.view.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size15
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: root.view.subtitle
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
        }
    }
    SearchField {
        id: search
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space10
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(WindowMetrics.search, root.width * 0.42)
        height: Theme.buttonHeight + Theme.space2
        prompt: qsTr("Search ports, projects, containers")
        text: root.view.query
        onEdited: text => root.view.query = text
        onCleared: root.view.query = ""
        input.Keys.onEscapePressed: {
            if (root.view.query !== "")
                root.view.query = "";
            else
                root.searchLeft();
        }
        input.Keys.onDownPressed: root.enterPage()
        input.Keys.onReturnPressed: root.enterPage()
    }
    Connections {
        target: root.view
        function onQueryChanged(): void {
            if (search.text !== root.view.query)
                search.text = root.view.query;
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4

        IconButton {
            id: inspector
            anchors.verticalCenter: parent.verticalCenter
            visible: root.view.listsPorts
            title: root.view.ports.isInspectorShown ? qsTr("Hide inspector") : qsTr("Show inspector")
            systemImage: "sidebar.right"
            size: Theme.size15
            onActivated: root.view.ports.toggleInspector()
        }
        IconButton {
            anchors.verticalCenter: parent.verticalCenter
            title: qsTr("Refresh now (⌘R)")
            systemImage: ""
            size: Theme.size15
            onActivated: root.view.refresh()

            Symbol {
                anchors.centerIn: parent
                name: "arrow.clockwise"
                size: Theme.size15
                color: Theme.inkSecondary
                turns: rotation !== 0

                RotationAnimation on rotation {
                    running: root.view.isRefreshing && !Theme.reduceMotion
                    alwaysRunToEnd: true
                    from: 0
                    to: 360
                    loops: Animation.Infinite
                    duration: Theme.turnDuration
                }
            }
        }
        IconButton {
            id: more
            anchors.verticalCenter: parent.verticalCenter
            title: qsTr("Command palette and view options")
            Accessible.name: qsTr("More")
            Accessible.role: Accessible.ButtonMenu
            systemImage: "ellipsis.circle"
            size: Theme.size15
            onActivated: root.view.requestMenu(more.mapToGlobal(0, more.height))
        }
    }
    Divider {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
