// How a phone gets to the server: its address as a code to scan. Needs both.
import QtQuick
import Tarnvale.Design

Card {
    id: root

    required property string url
    required property string code

    Row {
        width: parent.width
        spacing: Theme.space14

        RoundRect {
            id: ground
            width: WindowMetrics.code
            height: width
            radius: Theme.radius8
            color: Theme.inkOn // a camera needs the contrast, in the dark, too

            Image {
                anchors.fill: parent
                anchors.margins: Theme.space6
                smooth: false
                source: root.code
                Accessible.role: Accessible.Graphic
                Accessible.name: qsTr("QR code of %1").arg(root.url)
            }
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - ground.width - Theme.space14
            spacing: Theme.space4

            Row {
                spacing: Theme.space6

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "iphone"
                    size: Theme.size125
                    color: Theme.ink
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Open on your phone")
                    color: Theme.ink
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.size125
                    font.weight: Font.Medium
                }
            }
            Text {
                width: parent.width
                text: root.url
                textFormat: Text.PlainText
                elide: Text.ElideMiddle
                color: Theme.ink
                font.family: Theme.monoFamily
                font.pixelSize: Theme.size11
            }
            Text {
                width: parent.width
                wrapMode: Text.Wrap
                text: qsTr("Scan with the camera. Your phone must be on the same network.")
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size11
            }
        }
    }
}
