// What every button shares: pointer, keyboard, focus, tool tip and name for screen readers. Needs a `title`; its
// look is up to the part built on it. Reports `activated`.
import QtQuick
import Tarnvale.Design

Item {
    id: root

    required property string title
    property string tip: ""
    property real radius: Theme.radius6
    property int accessibleRole: Accessible.Button
    readonly property bool isHovered: hover.hovered && enabled
    readonly property bool isPressed: tap.pressed || keyIsDown
    property bool keyIsDown: false

    signal activated

    function activate(): void {
        if (enabled)
            activated();
    }

    activeFocusOnTab: true
    Accessible.role: root.accessibleRole
    Accessible.name: root.title
    Accessible.description: root.tip === root.title ? "" : root.tip
    Accessible.focusable: true
    Accessible.onPressAction: root.activate()

    Keys.onPressed: event => {
        const isPress = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (isPress && !event.isAutoRepeat)
            keyIsDown = true;
        event.accepted = isPress;
    }
    Keys.onReleased: event => {
        if (!keyIsDown || event.isAutoRepeat)
            return;
        keyIsDown = false;
        event.accepted = true;
        activate();
    }
    onActiveFocusChanged: keyIsDown = false

    HoverHandler {
        id: hover
    }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.activate()
    }
    HoverTip {
        text: root.tip
        hovered: root.isHovered && !root.isPressed
    }
    FocusRing {
        isShown: root.activeFocus
        radius: root.radius + Theme.space2
    }
}
