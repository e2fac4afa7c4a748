// A raised ground with a hairline that holds what belongs together, one below the other.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    default property alias content: column.data
    property real padding: Theme.space14
    property alias spacing: column.spacing
    property color color: Theme.card

    implicitHeight: column.implicitHeight + 2 * padding
    implicitWidth: column.implicitWidth + 2 * padding

    RoundRect {
        anchors.fill: parent
        radius: Theme.radius12
        color: root.color
        strokeColor: Theme.cardStroke
        strokeWidth: Theme.stroke
    }
    Column {
        id: column
        anchors.fill: parent
        anchors.margins: root.padding
        spacing: Theme.space10
    }
}
