// The server's front page as a picture that opens it. Needs the pictures and the port; reports `openChosen`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Column {
    id: root

    required property PagePictures pictures
    required property int port
    property string captionText: ""

    signal openChosen

    spacing: Theme.space6

    function tell(): void {
        captionText = pictures.caption(port);
    }
    onPortChanged: tell()
    Component.onCompleted: tell()
    Connections {
        target: root.pictures
        function onChanged(): void {
            root.tell();
        }
    }
    Pressable {
        id: frame
        width: parent.width
        height: Math.round(width * 0.625)
        radius: Theme.radius12
        title: qsTr("Open in Browser")
        onActivated: root.openChosen()
        scale: isHovered && !Theme.reduceMotion ? 1.01 : 1

        Behavior on scale {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
        WebPreviewImage {
            id: image
            anchors.fill: parent
            cornerRadius: Theme.radius12
            showsPlaceholder: true
            pictures: root.pictures
            port: root.port
        }
        RoundRect {
            anchors.fill: parent
            radius: Theme.radius12
            color: Theme.pictureWash
            opacity: (frame.isHovered || frame.activeFocus) && image.hasPicture ? 1 : 0
            visible: opacity > 0

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.quick
                }
            }
            Row {
                anchors.centerIn: parent
                spacing: Theme.space6

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "safari"
                    size: Theme.size14
                    color: Theme.inkOn
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Open in Browser")
                    color: Theme.inkOn
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size13
                    font.weight: Font.DemiBold
                }
            }
        }
    }
    Item {
        width: parent.width
        height: again.height

        Text {
            anchors.left: parent.left
            anchors.leftMargin: Theme.space2
            anchors.right: again.left
            anchors.rightMargin: Theme.space6
            anchors.verticalCenter: parent.verticalCenter
            text: root.captionText
            elide: Text.ElideRight
            color: Theme.inkTertiary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size11
        }
        IconButton {
            id: again
            anchors.right: parent.right
            title: qsTr("Refresh Preview")
            systemImage: "arrow.clockwise"
            size: Theme.size11
            onActivated: root.pictures.refresh(root.port)
        }
    }
}
