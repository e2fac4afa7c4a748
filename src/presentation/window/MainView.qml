// The main window: sidebar, toolbar, the chosen page, and what lies above them: palette, welcome, the sheet of a new
// stack, the error. Needs the window's state and that of each page.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages
import Tarnvale.Palette
import Tarnvale.Settings
import Tarnvale.Window

Rectangle {
    id: root

    required property MainViewController view
    required property OverviewController overview
    required property StacksController stacks
    required property SitesController sites
    required property ActivityController activity
    required property PaletteController palette
    required property WelcomeController welcome
    readonly property bool isBusy: paletteSheet.isOpen || welcomeSheet.isOpen || stackSheet.isOpen

    color: Theme.page
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Shortcut {
        sequences: ["Ctrl+R", "F5"]
        onActivated: root.view.refresh()
    }
    Shortcut {
        sequence: "Ctrl+K"
        onActivated: root.view.togglePalette()
    }
    Shortcut {
        sequence: "Ctrl+,"
        onActivated: root.view.openSettings()
    }
    Shortcut {
        sequence: "F9"
        onActivated: root.view.toggleSidebar()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: root.view.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.view.closeWindow()
    }
    Shortcut {
        sequences: ["Ctrl+F", "/"]
        enabled: !root.isBusy && !toolbar.isSearching
        onActivated: toolbar.focusSearch()
    }

    Item {
        id: everything
        anchors.fill: parent
        enabled: !root.isBusy

        Sidebar {
            id: sidebar
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.leftMargin: root.view.isSidebarShown ? 0 : -width
            width: WindowMetrics.sidebar
            visible: anchors.leftMargin > -width
            view: root.view
            onPageChosen: pages.forceActiveFocus()

            Behavior on anchors.leftMargin {
                NumberAnimation {
                    duration: Theme.springDuration
                    easing.type: Theme.springEasing
                }
            }
        }
        Item {
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.left: sidebar.right
            anchors.right: parent.right

            Toolbar {
                id: toolbar
                anchors.left: parent.left
                anchors.right: parent.right
                height: WindowMetrics.toolbar
                view: root.view
                onSearchLeft: pages.forceActiveFocus()
            }
            FocusScope { // a page that comes takes the keyboard from the last page alone
                id: pages
                focus: true
                anchors.top: toolbar.bottom
                anchors.bottom: parent.bottom
                anchors.left: parent.left
                anchors.right: parent.right

                PageHolder {
                    id: overviewHolder
                    isCurrent: root.view.selection === "overview"
                    isWanted: true
                    page: OverviewPage {
                        controller: root.overview
                    }
                }
                PageHolder {
                    id: portsHolder
                    isCurrent: root.view.listsPorts
                    isWanted: overviewHolder.isMade
                    page: PortsPage {
                        ports: root.view.ports
                    }
                }
                PageHolder {
                    id: stacksHolder
                    isCurrent: root.view.selection === "stacks"
                    isWanted: portsHolder.isMade
                    page: StacksPage {
                        controller: root.stacks
                    }
                }
                PageHolder {
                    id: sitesHolder
                    isCurrent: root.view.selection === "sites"
                    isWanted: stacksHolder.isMade
                    page: SitesPage {
                        controller: root.sites
                    }
                }
                PageHolder {
                    isCurrent: root.view.selection === "activity"
                    isWanted: sitesHolder.isMade
                    page: ActivityPage {
                        controller: root.activity
                    }
                }
            }
        }
    }
    ErrorToast {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: WindowMetrics.toastMargin
        width: Math.min(implicitWidth, parent.width - 2 * WindowMetrics.toastMargin)
        message: root.view.error
        onDismissed: root.view.dismissError()
    }
    Sheet {
        id: stackSheet
        anchors.fill: parent
        title: qsTr("New Stack")
        isOpen: root.stacks.newStack.isOpen
        onDismissed: root.stacks.newStack.cancel()
        sheet: NewStackSheet {
            controller: root.stacks.newStack
        }
    }
    Sheet {
        id: welcomeSheet
        anchors.fill: parent
        title: qsTr("Welcome to Tarnvale")
        isOpen: root.view.isWelcomeShown
        onDismissed: root.view.closeWelcome()
        sheet: WelcomeView {
            controller: root.welcome
            onDone: root.view.closeWelcome()
        }
    }
    Sheet {
        id: paletteSheet
        anchors.fill: parent
        title: qsTr("Command Palette")
        isOpen: root.view.isPaletteShown
        fallback: pages
        topMargin: 70
        wash: Theme.paletteWash
        closesOnWash: true
        onDismissed: root.view.closePalette()
        sheet: CommandPalette {
            controller: root.palette
        }
    }
}
