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

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    ToolPicture {
        anchors.fill: parent
        symbol: root.symbol
        logo: root.logo
        tint: root.tint
        surface: Theme.surface
        dark: Theme.dark
        visible: !root.hasAppIcon
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
