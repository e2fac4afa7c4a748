// Something that must be answered before the window goes on: a card over a shaded window, which takes the keyboard and
// gives it back. Needs its content's component, made anew at each opening; who shows it keeps `isOpen`, and disables what
// lies behind meanwhile, so that Tab stays here. Reports `dismissed` for Esc.
import QtQuick
import Tarnvale.Design

FocusScope {
    id: root

    required property Component sheet
    required property string title // for screen readers
    property bool isOpen: false
    property real topMargin: -1 // from the window's upper edge; below 0: in the middle
    property bool closesOnWash: false
    property color wash: Theme.shade
    readonly property Item content: loader.item

    signal dismissed

    property Item before: null // what had the keyboard
    property Item fallback: null // what gets it when that can't have it back

    visible: isOpen || opacity > 0
    opacity: isOpen ? 1 : 0
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Accessible.ignored: !isOpen
    onIsOpenChanged: {
        if (isOpen)
            takeFocus();
        else if (activeFocus)
            giveFocusBack();
    }
    Component.onCompleted: if (isOpen) Qt.callLater(takeFocus)
    Keys.onEscapePressed: root.dismissed()

    // What had it may be out of sight by now.
    function giveFocusBack(): void {
        const next = before && before.visible ? before : fallback;
        if (next)
            next.forceActiveFocus();
    }
    function takeFocus(): void {
        before = Window.activeFocusItem;
        forceActiveFocus();
    }

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.fade
        }
    }
    Rectangle {
        anchors.fill: parent
        color: root.wash
    }
    MouseArea { // nothing behind it may be reached
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
        onClicked: if (root.closesOnWash) root.dismissed()
    }
    RoundRect {
        id: card
        anchors.horizontalCenter: parent.horizontalCenter
        y: root.topMargin >= 0 ? root.topMargin
                               : Math.max(Theme.space16, Math.round((root.height - loader.implicitHeight) * 0.42))
        width: Math.min(root.width - 2 * Theme.space16, loader.implicitWidth)
        height: Math.min(root.height - y - Theme.space16, loader.implicitHeight)
        radius: Theme.radius16
        color: Theme.surfaceRaised
        strokeColor: Theme.panelStroke
        strokeWidth: Theme.stroke
        scale: root.isOpen || Theme.reduceMotion ? 1 : 0.97
        transformOrigin: Item.Top

        Behavior on scale {
            NumberAnimation {
                duration: Theme.springDuration
                easing.type: Theme.springEasing
            }
        }
        MouseArea {
            anchors.fill: parent
        }
        Loader {
            id: loader
            anchors.fill: parent
            focus: true
            active: root.isOpen || root.opacity > 0
            sourceComponent: root.sheet
        }
    }
}
