// What the first opening of the window tells and asks. Needs the welcome's state, and stands on a raised card, which is
// its host's. Reports `done`.
import QtQuick
import Tarnvale.Design
import Tarnvale.Settings

FocusScope {
    id: root

    required property WelcomeController controller

    signal done

    implicitWidth: Math.round(500 * Math.max(1, Theme.textScale))
    implicitHeight: column.implicitHeight + 2 * Theme.space24
    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Welcome to Tarnvale")

    Connections {
        target: root.controller
        function onDone(): void {
            root.done();
        }
    }
    Item { // Return means the button below, wherever nothing else wants it
        focus: true
        Keys.onReturnPressed: root.controller.finish()
        Keys.onEnterPressed: root.controller.finish()
        Accessible.ignored: true
    }
    Column {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Theme.space24
        y: Theme.space24
        spacing: Theme.space16

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 64
            height: width
            sourceSize: Qt.size(width, height)
            source: "qrc:/icons/dev.tarnvale.Tarnvale.svg"
            Accessible.ignored: true
        }
        Column {
            width: parent.width
            spacing: Theme.space4
            bottomPadding: Theme.space6

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Welcome to Tarnvale")
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.ink
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size20
                font.weight: Font.Bold
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Every local dev server, one click away — in the menu bar and here.")
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.inkSecondary
                font.family: Theme.fontFamily
                font.pixelSize: Theme.size125
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        WelcomeRow {
            symbol: "keyboard"
            title: qsTr("Open from anywhere")
            text: root.controller.hotKeyCommand !== ""
                ? qsTr("This desktop lets no application take a key. Bind one to this command in its settings:\n%1").arg(root.controller.hotKeyCommand)
                : qsTr("Press the shortcut in any app to open the menu bar panel.")
            tint: Theme.blue

            Keycaps {
                caps: root.controller.hotKeyCaps
            }
        }
        WelcomeRow {
            symbol: "power"
            title: qsTr("Launch at login")
            text: qsTr("Keep watching your ports from the moment you log in.")
            tint: Theme.green

            Switch {
                title: qsTr("Launch at login")
                checked: root.controller.launchAtLogin
                onToggled: checked => root.controller.setLaunchAtLogin(checked)
            }
        }
        WelcomeRow {
            symbol: "bell.badge"
            title: qsTr("Notifications")
            text: qsTr("Port conflicts, watched ports stopping, public links ready.")
            tint: Theme.orange

            PushButton {
                title: root.controller.notificationsAsked ? qsTr("Asked") : qsTr("Allow")
                isSmall: true
                onActivated: root.controller.allowNotifications()
            }
        }
        WelcomeRow {
            symbol: "terminal"
            title: qsTr("tarnctl command")
            text: qsTr("tarnctl ports · tarnctl kill 3000 · tarnctl open 5173")
            tint: Theme.purple

            PushButton {
                title: root.controller.copied ? qsTr("Copied") : qsTr("Copy Install")
                isSmall: true
                onActivated: root.controller.copyInstallCommand()
            }
        }
        Item {
            width: parent.width
            implicitHeight: start.implicitHeight + Theme.space6

            PushButton {
                id: start
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                title: qsTr("Get Started")
                kind: "prominent"
                onActivated: root.controller.finish()
            }
        }
    }
}
