// The first tab. Needs the settings' state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Settings

SettingsPage {
    id: root

    required property SettingsController controller

    Banner {
        width: parent.width
        visible: root.controller.trouble !== ""
        text: root.controller.trouble
        onDismissed: root.controller.dismissTrouble()
    }
    SettingsSection {
        SettingRow {
            title: qsTr("Launch at login")

            Switch {
                title: qsTr("Launch at login")
                checked: root.controller.launchAtLogin
                onToggled: checked => root.controller.setLaunchAtLogin(checked)
            }
        }
        Divider {
            width: parent.width
        }
        SettingRow {
            title: qsTr("Open the window when Tarnvale starts")

            Switch {
                title: qsTr("Open the window when Tarnvale starts")
                checked: root.controller.showWindowAtLaunch
                onToggled: checked => root.controller.setShowWindowAtLaunch(checked)
            }
        }
    }
    SettingsSection {
        SettingRow {
            title: qsTr("Website previews")
            note: qsTr("Thumbnails of each web server's home page. While the window is open, Tarnvale loads each page in the background about once a minute — those requests appear in the server's log.")

            Switch {
                title: qsTr("Website previews")
                checked: root.controller.showWebPreviews
                onToggled: checked => root.controller.setShowWebPreviews(checked)
            }
        }
    }
    SettingsSection {
        SettingRow {
            title: qsTr("Show system processes")
            note: qsTr("Apps and macOS daemons that listen on ports (started from “/”). Off shows only dev servers.")

            Switch {
                title: qsTr("Show system processes")
                checked: root.controller.showAll
                onToggled: checked => root.controller.setShowAll(checked)
            }
        }
    }
    SettingsSection {
        SettingRow {
            title: qsTr("tarnctl command")
            isWide: true
            note: qsTr("Paste it in Terminal to use `tarnctl ports`, `tarnctl kill <port>` and `tarnctl open <port>`.")

            PushButton {
                title: root.controller.copied ? qsTr("Copied") : qsTr("Copy Install Command")
                isSmall: true
                onActivated: root.controller.copyInstallCommand()
            }
        }
    }
    SettingsSection {
        title: qsTr("Updates")
        visible: root.controller.hasUpdates

        SettingRow {
            title: qsTr("Check for updates automatically")

            Switch {
                title: qsTr("Check for updates automatically")
                checked: root.controller.automaticallyChecks
                onToggled: checked => root.controller.setAutomaticallyChecks(checked)
            }
        }
        Divider {
            width: parent.width
        }
        SettingRow {
            title: qsTr("Software update")
            note: root.controller.lastCheck

            PushButton {
                title: qsTr("Check Now")
                isSmall: true
                onActivated: root.controller.checkNow()
            }
        }
    }
    SettingsSection {
        title: qsTr("Desktop integration")

        Repeater {
            model: root.controller.desktop
            delegate: DesktopRowView {
                width: parent?.width ?? 0
            }
        }
    }
}
