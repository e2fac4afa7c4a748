// All of settings, in three tabs. Needs the settings' state; asks for the size that its window should have.
import QtQuick
import Tarnvale.Design
import Tarnvale.Settings

FocusScope {
    id: root

    required property SettingsController controller

    readonly property real grown: Math.max(1, Theme.textScale)

    function step(by: int): void {
        root.controller.tab = (root.controller.tab + by + 3) % 3;
    }

    implicitWidth: Math.round(520 * grown)
    implicitHeight: Math.round(640 * grown)
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Settings")
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Keys.onPressed: event => {
        const isTab = event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab;
        const isPage = event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp;
        if (!(event.modifiers & Qt.ControlModifier) || !(isTab || isPage))
            return;
        const isBack = event.key === Qt.Key_PageUp || (event.modifiers & Qt.ShiftModifier);
        root.step(isBack ? -1 : 1);
        event.accepted = true;
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    Rectangle {
        id: bar
        anchors.left: parent.left
        anchors.right: parent.right
        height: tabs.height + 2 * Theme.space12
        color: Theme.sidebar

        SegmentedPicker {
            id: tabs
            anchors.centerIn: parent
            focus: true
            title: qsTr("Settings")
            options: [qsTr("General"), qsTr("Shortcut"), qsTr("About")]
            symbols: ["gearshape", "keyboard", "info.circle"]
            current: root.controller.tab
            onChosen: index => root.controller.tab = index
        }
    }
    Divider {
        id: line
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: bar.bottom
    }
    Loader {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: line.bottom
        anchors.bottom: parent.bottom
        sourceComponent: [general, shortcut, about][root.controller.tab]
    }
    Component {
        id: general

        GeneralSettings {
            controller: root.controller
        }
    }
    Component {
        id: shortcut

        ShortcutSettings {
            controller: root.controller
        }
    }
    Component {
        id: about

        AboutSettings {
            versionLine: root.controller.versionLine
        }
    }
}
