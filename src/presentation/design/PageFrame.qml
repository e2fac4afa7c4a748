// A page that scrolls as a whole: its parts one below the other between the standard margins, not wider than can be
// read well. `contentY` can be read and set, so that the page may keep its place.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    default property alias content: column.data
    property alias spacing: column.spacing
    property alias contentY: view.contentY
    property real maximumWidth: 1120
    property real margin: Theme.space28

    Flickable {
        id: view
        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * root.margin

        Column {
            id: column
            anchors.horizontalCenter: parent.horizontalCenter
            y: root.margin
            width: Math.min(root.maximumWidth, view.width - 2 * root.margin)
            spacing: Theme.space24
        }
    }
    ListScroller {
        target: view
    }
    FocusFollower {
        target: view
    }
}
