// What fills the panel's window: its ground and the list. Needs the list, the footer, and whether the window can be
// seen through; is as tall as what it shows.
import QtQuick
import Tarnvale.Design
import Tarnvale.Panel

Item {
    id: root

    required property PortListController list
    required property PanelFooterController footer
    property bool isTranslucent: false
    property real maxHeight: Infinity // what the screen has room for

    implicitWidth: PanelMetrics.width
    implicitHeight: content.implicitHeight
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Tarnvale")
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    RoundRect {
        anchors.fill: parent
        radius: root.isTranslucent ? Theme.radius12 : 0
        color: root.isTranslucent ? Theme.surfaceWash : Theme.surface
        strokeColor: Theme.panelStroke
        strokeWidth: Theme.stroke
    }
    PortListView {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        list: root.list
        footer: root.footer
        maxHeight: root.maxHeight
    }
}
