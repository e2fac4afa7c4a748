// The window of updates: what there is to say, the notes of the version that is offered, and what can be done.
// Needs the state of the window.
import QtQuick
import Tarnvale.Design
import Tarnvale.Update

FocusScope {
    id: root

    required property UpdateViewController controller
    readonly property bool isOffer: controller.hasOffer && controller.phase !== UpdateViewController.Failed

    Accessible.role: Accessible.Dialog
    Accessible.name: controller.title

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    EmptyPage {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: buttons.top
        visible: !root.isOffer
        symbol: root.controller.symbol
        title: root.controller.title
        message: root.controller.message
    }
    UpdateOffer {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: buttons.top
        anchors.margins: Theme.space20
        visible: root.isOffer
        controller: root.controller
    }
    UpdateButtons {
        id: buttons
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.space20
        focus: true
        controller: root.controller
    }
}
