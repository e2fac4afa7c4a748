// The last tab: who we are. Needs the line with the version.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string versionLine

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(Theme.space16, Math.round((parent.height - height) * 0.42))
        width: Math.min(implicitWidth, parent.width - 2 * Theme.space20)
        spacing: Theme.space6

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 96
            height: width
            sourceSize: Qt.size(width, height)
            source: "qrc:/icons/dev.tarnvale.Tarnvale.svg"
            Accessible.ignored: true
        }
        Item {
            width: 1
            height: Theme.space6
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Tarnvale")
            textFormat: Text.PlainText
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size20
            font.weight: Font.Bold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.versionLine
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: Theme.space6
            text: qsTr("Every local dev port, one click away.")
            textFormat: Text.PlainText
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
