// A page of ports: the rows in their sections, and the inspector of the selected one beside them. Needs the page's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

FocusScope {
    id: root

    required property PortsController ports
    readonly property bool showsInspector: ports.isInspectorShown && ports.rowCount > 0

    EmptyPage {
        anchors.fill: parent
        visible: root.ports.rowCount === 0
        symbol: "moon.zzz"
        title: root.ports.emptyMessage
        message: qsTr("Tarnvale scans every 2 seconds — servers show up here as soon as they start listening.")
    }
    PortRowList {
        id: list
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: inspector.left
        visible: root.ports.rowCount > 0
        focus: true
        ports: root.ports
    }
    Rectangle {
        id: inspector
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: root.showsInspector ? 0 : -width
        width: Math.max(280 * WindowMetrics.scale, Math.min(Math.max(WindowMetrics.inspector, root.width * 0.25), WindowMetrics.widestInspector, root.width * 0.46))
        visible: anchors.rightMargin > -width
        color: Theme.inspector

        Behavior on anchors.rightMargin {
            enabled: root.ports.rowCount > 0

            NumberAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
        Rectangle {
            anchors.left: parent.left
            width: Theme.stroke
            height: parent.height
            color: Theme.divider
            z: 1
        }
        EmptyPage {
            anchors.fill: parent
            visible: !root.ports.inspector.isPresent
            symbol: "sidebar.right"
            title: qsTr("No port selected")
            message: qsTr("Select a port to see its process, command, folder and actions.")
        }
        PortInspector {
            anchors.fill: parent
            visible: root.ports.inspector.isPresent
            inspector: root.ports.inspector
            pictures: root.ports.pictures
        }
    }
}
