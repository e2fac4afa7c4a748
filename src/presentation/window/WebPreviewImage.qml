// The picture of a server's front page, cut to fill its place, or a placeholder. Needs the pictures and the port.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Item {
    id: root

    required property PagePictures pictures
    required property int port
    property real cornerRadius: Theme.radius6
    property bool showsPlaceholder: false
    readonly property bool hasPicture: picture.hasPicture

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Preview of localhost:%1").arg(port)
    Accessible.ignored: !hasPicture

    RoundRect {
        anchors.fill: parent
        radius: root.cornerRadius
        color: Theme.fieldFill
        visible: root.showsPlaceholder && !root.hasPicture
    }
    Symbol {
        anchors.centerIn: parent
        visible: root.showsPlaceholder && !root.hasPicture
        name: "photo"
        size: Theme.size16
        color: Theme.inkTertiary
    }
    PagePicture {
        id: picture
        anchors.fill: parent
        radius: root.cornerRadius
        strokeColor: Theme.cardStroke
        pictures: root.pictures
        port: root.port
    }
}
