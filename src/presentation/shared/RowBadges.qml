// What is special about a port, as small symbols with a word for each: an agent started it, it is watched, others can
// reach it, it is shared. Needs the four facts; an empty one has no badge.
import QtQuick
import Tarnvale.Design
import Tarnvale.Shared

Row {
    id: root

    required property string agent
    required property string agentLogo
    required property bool isWatched
    required property bool isExposed
    required property string publicUrl

    spacing: Theme.space4

    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: root.agent !== ""
        visible: active
        sourceComponent: Badge {
            symbol: root.agentLogo
            color: root.agentLogo === "logo-openai" ? Theme.ink : Theme.brandClaude
            label: qsTr("Started by %1").arg(root.agent)
            size: Theme.size11
        }
    }
    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: root.isWatched
        visible: active
        sourceComponent: Badge {
            symbol: "bell.fill"
            color: Theme.warning
            label: qsTr("Watched")
            tip: qsTr("Watched: you'll be notified when it stops")
        }
    }
    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: root.isExposed
        visible: active
        sourceComponent: Badge {
            symbol: "wifi"
            color: Theme.warning
            label: qsTr("Exposed to network")
            tip: qsTr("Reachable from other devices on your network (not bound to 127.0.0.1)")
        }
    }
    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: root.publicUrl !== ""
        visible: active
        sourceComponent: Badge {
            symbol: "globe"
            color: Theme.info
            label: qsTr("Shared publicly")
            tip: qsTr("Public at %1").arg(root.publicUrl)
        }
    }
}
