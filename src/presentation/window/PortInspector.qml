// One port in all its detail, card by card, and at the end the button that stops it. Needs the inspector's state and the
// pictures of pages.
import QtQuick
import Tarnvale.Design
import Tarnvale.Window

Item {
    id: root

    required property InspectorController inspector
    required property PagePictures pictures
    readonly property var facts: inspector.facts

    Flickable {
        id: view
        objectName: "inspectorView"
        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Theme.space16

        Column {
            id: column
            x: Theme.space16
            y: Theme.space16
            width: view.width - 2 * Theme.space16
            spacing: Theme.space14

            InspectorHeader {
                width: parent.width
                facts: root.facts
            }
            WebPreviewCard {
                width: parent.width
                visible: root.facts.isWeb && root.pictures.isEnabled
                pictures: root.pictures
                port: root.facts.port
                onOpenChosen: root.inspector.openInBrowser()
            }
            ActionBar {
                width: parent.width
                inspector: root.inspector
            }
            DetailsCard {
                width: parent.width
                inspector: root.inspector
            }
            UsageCard {
                width: parent.width
                visible: root.facts.hasUsage
                facts: root.facts
            }
            LogsBlock {
                width: parent.width
                inspector: root.inspector
            }
            CommandBlock {
                width: parent.width
                visible: root.facts.command !== ""
                inspector: root.inspector
            }
            FolderBlock {
                width: parent.width
                visible: root.facts.folder !== ""
                inspector: root.inspector
            }
            NotifyCard {
                width: parent.width
                inspector: root.inspector
            }
            HealthCheckCard {
                width: parent.width
                visible: root.facts.isWeb
                inspector: root.inspector
            }
            ShareCard {
                width: parent.width
                visible: root.facts.sharing !== "notOffered"
                inspector: root.inspector
            }
            PhoneCard {
                width: parent.width
                visible: root.inspector.phoneUrl !== ""
                url: root.inspector.phoneUrl
                code: root.inspector.phoneCode
            }
            PushButton {
                width: parent.width
                kind: "destructive"
                isArmed: root.inspector.armedKill
                title: root.inspector.armedKill ? qsTr("Click again to confirm") : root.facts.stopTitle
                symbol: root.inspector.armedKill ? "exclamationmark.triangle.fill" : "xmark.octagon"
                tip: root.facts.stopTip
                onActivated: root.inspector.stopInTwoSteps()
            }
        }
    }
    ListScroller {
        target: view
    }
    FocusFollower {
        target: view
    }
    transform: Translate {
        id: shift
    }
    Connections {
        target: root.inspector
        function onRowIdChanged(): void {
            view.contentY = 0;
            if (Theme.springDuration > 0)
                arrival.restart();
        }
    }
    ParallelAnimation {
        id: arrival

        NumberAnimation {
            target: root
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.fade
        }
        NumberAnimation {
            target: shift
            property: "x"
            from: Theme.space12
            to: 0
            duration: Theme.springDuration
            easing.type: Theme.springEasing
        }
    }
}
