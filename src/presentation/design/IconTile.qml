// The tile of a tool: its application's icon, else its logo, else a symbol, on a rounded ground of its colour.
// `inContainer` adds Docker's badge. Hidden from screen readers: the text beside it says the same.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    property string symbol: "terminal.fill"
    property string logo: ""
    property color tint: Theme.gray
    property bool inContainer: false
    property url appIcon: ""
    property real size: 32

    readonly property bool hasAppIcon: application.item?.isFound ?? false
    // The tint as a drawing in it can be made out: makers choose theirs for grounds of their own.
    readonly property color mark: Appearance.legible(tint, Theme.surface, Theme.dark ? 4.2 : 3.2)

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    RoundRect {
        anchors.fill: parent
        radius: root.size * 0.27
        visible: !root.hasAppIcon
        color: Theme.wash(root.mark, Theme.dark ? 0.24 : 0.13)
        endColor: Theme.wash(root.mark, Theme.dark ? 0.17 : 0.2)
    }
    Loader {
        id: application
        active: root.appIcon.toString() !== ""
        anchors.centerIn: parent
        sourceComponent: Image {
            readonly property bool isFound: status === Image.Ready && implicitWidth > 1

            width: Math.round(root.size * 0.85)
            height: width
            sourceSize: Qt.size(width, height)
            source: root.appIcon
        }
    }
    Symbol {
        anchors.centerIn: parent
        name: root.logo !== "" ? root.logo : root.symbol
        size: Math.round(root.logo !== "" ? root.size * 0.5 : root.size * 0.43)
        color: root.mark
        visible: !root.hasAppIcon
    }
    Loader {
        active: root.inContainer
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: -Math.round(root.size * 0.1)
        sourceComponent: RoundRect {
            width: Math.round(root.size * 0.42)
            height: width
            radius: root.size * 0.12
            color: Theme.brandDocker

            Symbol {
                anchors.centerIn: parent
                name: "logo-docker"
                size: parent.width - 2 * Math.round(root.size * 0.06)
                color: Theme.inkOn
            }
        }
    }
}
