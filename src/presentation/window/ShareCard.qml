// Whether others on the internet can reach the server, and how. Needs the inspector's state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Card {
    id: root

    required property InspectorController inspector
    readonly property string sharing: inspector.facts.sharing
    readonly property bool isCopied: inspector.copiedField === "publicUrl"

    component Note: Text {
        width: parent.width
        wrapMode: Text.Wrap
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size11
    }

    Row {
        spacing: Theme.space8

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "globe"
            size: Theme.size13
            color: root.sharing === "up" ? Theme.info : Theme.inkSecondary
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Share publicly")
            color: Theme.ink
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size125
            font.weight: Font.Medium
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }
    Note {
        visible: root.sharing === "noTool"
        text: qsTr("Install cloudflared (brew install cloudflared) or ngrok to share a port.")
    }
    PushButton {
        visible: root.sharing === "available"
        isSmall: true
        title: qsTr("Share via %1").arg(root.inspector.facts.shareTool)
        onActivated: root.inspector.share()
    }
    Note {
        visible: root.sharing === "available"
        text: qsTr("Anyone with the link can reach this server until you stop sharing.")
    }
    Row {
        visible: root.sharing === "starting"
        spacing: Theme.space8

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow.clockwise"
            size: Theme.size11
            color: Theme.inkSecondary
            turns: true

            RotationAnimation on rotation {
                running: root.sharing === "starting" && root.visible && !Theme.reduceMotion
                from: 0
                to: 360
                loops: Animation.Infinite
                duration: Theme.turnDuration
            }
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Starting %1…").arg(root.inspector.facts.shareTool)
            color: Theme.inkSecondary
            font.family: Theme.fontFamily
            font.pixelSize: Theme.size12
        }
    }
    Text {
        id: url
        visible: root.sharing === "up"
        width: parent.width
        text: root.inspector.facts.publicUrl
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        color: Theme.link
        font.family: Theme.monoFamily
        font.pixelSize: Theme.size115

        HoverHandler {
            id: hover
        }
        HoverTip {
            text: url.truncated ? url.text : ""
            hovered: hover.hovered
        }
    }
    Flow {
        visible: root.sharing === "starting" || root.sharing === "up"
        width: parent.width
        spacing: Theme.space6

        PushButton {
            visible: root.sharing === "up"
            isSmall: true
            symbol: root.isCopied ? "checkmark" : "doc.on.doc"
            title: root.isCopied ? qsTr("Copied") : qsTr("Copy Public URL")
            onActivated: root.inspector.copyPublicURL()
        }
        PushButton {
            isSmall: true
            title: qsTr("Stop Sharing")
            onActivated: root.inspector.stopSharing()
        }
    }
}
