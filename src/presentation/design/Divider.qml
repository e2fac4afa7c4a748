// A thin line between two parts, one pixel of the screen at least.
import QtQuick

Rectangle {
    implicitHeight: Theme.stroke
    implicitWidth: 80
    color: Theme.divider
    Accessible.ignored: true
}
