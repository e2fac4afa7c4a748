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

    Badge {
        visible: root.agent !== ""
        symbol: root.agentLogo
        color: root.agentLogo === "logo-openai" ? Theme.ink : Theme.brandClaude
        label: qsTr("Started by %1").arg(root.agent)
        size: Theme.size11
    }
    Badge {
        visible: root.isWatched
        symbol: "bell.fill"
        color: Theme.warning
        label: qsTr("Watched")
        tip: qsTr("Watched: you'll be notified when it stops")
    }
    Badge {
        visible: root.isExposed
        symbol: "wifi"
        color: Theme.warning
        label: qsTr("Exposed to network")
        tip: qsTr("Reachable from other devices on your network (not bound to 127.0.0.1)")
    }
    Badge {
        visible: root.publicUrl !== ""
        symbol: "globe"
        color: Theme.info
        label: qsTr("Shared publicly")
        tip: qsTr("Public at %1").arg(root.publicUrl)
    }
}
