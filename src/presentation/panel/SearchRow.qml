// The search field with the count of what is listed. Every key goes to the list first: arrows walk its rows, and
// letters act on the selected row while nothing is typed.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PortListController list

    implicitHeight: field.implicitHeight + 2 * Theme.space10

    SearchField {
        id: field
        anchors.fill: parent
        anchors.margins: Theme.space10
        prompt: qsTr("Search ports, projects, containers")
        count: root.list.portCount
        countTip: qsTr("%1 listening").arg(root.list.portCount)
        keyTargets: [keys]
        onEdited: text => root.list.query = text
        onCleared: root.list.query = ""
    }
    Item {
        id: keys
        Keys.onPressed: event => event.accepted = root.list.handleKey(event.key, event.modifiers, event.isAutoRepeat)
    }
    Connections {
        target: root.list
        function onQueryChanged(): void {
            if (field.text !== root.list.query)
                field.text = root.list.query;
        }
        function onIsOpenChanged(): void {
            if (root.list.isOpen)
                field.input.forceActiveFocus();
        }
    }
}
