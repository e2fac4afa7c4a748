// The runs of one server, or on one port, in a day. Needs the roles of the groups' rows, and whether they stand by
// port: then each run tells what ran.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Card {
    id: root

    required property string title
    required property string runCount
    required property list<string> names
    required property list<string> ranges
    required property list<string> rangeTips
    required property list<string> lengths
    required property var areRunning
    required property bool isRunning
    required property bool byPort

    padding: Theme.space14
    spacing: Theme.space6
    Accessible.role: Accessible.List
    Accessible.name: title + ", " + runCount

    Item {
        width: parent.width
        implicitHeight: Math.max(heading.implicitHeight, dot.implicitHeight)

        Text {
            id: heading
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Math.ceil(implicitWidth), parent.width - runs.implicitWidth - dot.width - 2 * Theme.space12)
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: Theme.ink
            font.family: root.byPort ? Theme.monoFamily : Theme.fontFamily
            font.pixelSize: Theme.size13
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text

            HoverHandler {
                id: hover
            }
            HoverTip {
                text: heading.truncated ? root.title : ""
                hovered: hover.hovered
            }
        }
        PulsingDot {
            id: dot
            anchors.left: heading.right
            anchors.leftMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isRunning
            color: Theme.success
            label: qsTr("Running")
        }
        Text {
            id: runs
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.runCount
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
            Accessible.ignored: true
        }
    }
    Column {
        width: parent.width

        Repeater {
            model: root.ranges.length

            SessionLine {
                required property int index

                width: parent ? parent.width : 0
                name: root.byPort ? root.names[index] ?? "" : ""
                range: root.ranges[index] ?? ""
                rangeTip: root.rangeTips[index] ?? ""
                length: root.lengths[index] ?? ""
                isRunning: root.areRunning[index] ?? false
            }
        }
    }
}
