// The tab of the keys that open the panel. Needs the settings' state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Settings

SettingsPage {
    id: root

    required property SettingsController controller

    SettingsSection {
        visible: root.controller.canRecord

        SettingRow {
            title: qsTr("Open the menu bar panel")
            note: root.controller.isRecording ? qsTr("Esc cancels") : qsTr("Click, then press a new shortcut")

            ShortcutButton {
                caps: root.controller.hotKeyCaps
                isRecording: root.controller.isRecording
                onActivated: root.controller.toggleRecording()
            }
        }
    }
    SettingsSection {
        visible: !root.controller.canRecord

        SettingRow {
            title: qsTr("Open the menu bar panel")
            note: root.controller.hotKeyCommand !== ""
                ? qsTr("This desktop lets no application take a key. Bind one to this command in its settings:\n%1").arg(root.controller.hotKeyCommand)
                : qsTr("This desktop lets no application take a key.")

            PushButton {
                visible: root.controller.hotKeyCommand !== ""
                title: qsTr("Copy Command")
                isSmall: true
                onActivated: root.controller.copyHotKeyCommand()
            }
        }
    }
    Text {
        width: parent.width
        leftPadding: Theme.space4
        rightPadding: Theme.space4
        visible: root.controller.canRecord
        text: qsTr("Works from any app. Use ⌘, ⌥ or ⌃ with a key.")
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Theme.inkSecondary
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size115
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        width: parent.width
        leftPadding: Theme.space4
        rightPadding: Theme.space4
        visible: root.controller.message !== ""
        text: root.controller.message
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Theme.dangerText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.size115
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
