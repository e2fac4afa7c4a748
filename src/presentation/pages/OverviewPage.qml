// The window's first page: a greeting, counters, the running servers, the latest activity and some stacks. Needs its
// state; each block leads to the page with its detail.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

PageFrame {
    id: root

    required property OverviewController controller
    readonly property real inner: PageMetrics.contentWidth(width)
    readonly property bool hasBoth: controller.eventCount > 0 && controller.stackCount > 0
    readonly property bool areAbreast: hasBoth && inner >= PageMetrics.blocksAbreastFrom

    maximumWidth: PageMetrics.maximumWidth
    margin: PageMetrics.margin
    Accessible.name: qsTr("Overview")

    function menuAt(card: Item, rowId: string, x: real, y: real): void {
        const place = card.mapToGlobal(x, y);
        root.controller.requestMenu(rowId, place);
    }

    PageHeader {
        id: head
        width: root.inner
        height: PageMetrics.headHeight
        title: root.controller.greeting
        subtitle: root.controller.summary

        AppearIn {
            block: head
        }
    }
    Grid {
        id: stats
        columns: root.inner >= PageMetrics.fourStatsFrom ? 4 : 2
        spacing: PageMetrics.gap

        readonly property real cardWidth: (root.inner - (columns - 1) * spacing) / columns

        AppearIn {
            block: stats
            order: 1
        }
        StatCard {
            width: stats.cardWidth
            title: qsTr("Listening")
            value: root.controller.rowCount
            symbol: "dot.radiowaves.left.and.right"
            tint: Theme.blue
            onActivated: root.controller.showPage("allPorts")
        }
        StatCard {
            width: stats.cardWidth
            title: qsTr("Web servers")
            value: root.controller.webCount
            symbol: "globe"
            tint: Theme.green
            detail: root.controller.webDetail
            onActivated: root.controller.showPage("web")
        }
        StatCard {
            width: stats.cardWidth
            title: qsTr("Databases & services")
            value: root.controller.serviceCount
            symbol: "cylinder.split.1x2.fill"
            tint: Theme.orange
            onActivated: root.controller.showPage("services")
        }
        StatCard {
            width: stats.cardWidth
            title: qsTr("Exposed to network")
            value: root.controller.exposedCount
            symbol: "wifi"
            tint: Theme.pink
            detail: qsTr("Reachable from your LAN")
            onActivated: root.controller.showPage("allPorts")
        }
    }
    Card {
        id: quiet
        width: root.inner
        visible: root.controller.rowCount === 0

        AppearIn {
            block: quiet
            order: 2
        }
        EmptyPage {
            width: parent.width
            symbol: "moon.zzz"
            title: qsTr("All quiet")
            message: qsTr("No dev servers are running. Start one and it appears here within seconds.")
        }
    }
    Column {
        id: running
        width: root.inner
        spacing: PageMetrics.gap
        visible: root.controller.rowCount > 0

        AppearIn {
            block: running
            order: 2
        }
        BlockHeader {
            width: parent.width
            title: qsTr("Running now")
            linkTitle: qsTr("See all")
            onChosen: root.controller.showPage("allPorts")
        }
        CardGrid {
            id: grid
            width: parent.width
            page: root
            model: root.controller.rows
            minimumCardWidth: PageMetrics.runningCardWidth
            cardHeight: PageMetrics.runningCardHeight
            Accessible.name: qsTr("Running now")
            onMenuKeyPressed: card => card.menuChosen(Theme.space24, card.height)
            delegate: CardCell {
                id: cell

                required property string rowId
                required property string title
                required property string subtitle
                required property string toolTip
                required property string accessibleName
                required property string symbol
                required property string logo
                required property string tint
                required property bool inContainer
                required property bool isWeb
                required property string health
                required property string healthSummary
                required property string pill

                cards: grid
                sourceComponent: RunningCard {
                    id: card
                    title: cell.title
                    subtitle: cell.subtitle
                    toolTip: cell.toolTip
                    accessibleName: cell.accessibleName
                    symbol: cell.symbol
                    logo: cell.logo
                    tint: cell.tint
                    inContainer: cell.inContainer
                    isWeb: cell.isWeb
                    health: cell.health
                    healthSummary: cell.healthSummary
                    port: cell.pill
                    activeFocusOnTab: cell.isCurrent || activeFocus
                    onActivated: root.controller.showPort(cell.rowId)
                    onOpenChosen: root.controller.openInBrowser(cell.rowId)
                    onMenuChosen: (x, y) => root.menuAt(card, cell.rowId, x, y)
                }
            }
        }
    }
    Grid {
        id: more
        columns: root.areAbreast ? 2 : 1
        columnSpacing: Theme.space24
        rowSpacing: root.spacing
        readonly property real wideColumn: Math.round((root.inner - columnSpacing) * 0.58)
        visible: root.controller.eventCount > 0 || root.controller.stackCount > 0

        AppearIn {
            block: more
            order: 3
        }
        Column {
            width: root.areAbreast ? more.wideColumn : root.inner
            spacing: PageMetrics.gap
            visible: root.controller.eventCount > 0

            BlockHeader {
                width: parent.width
                title: qsTr("Recent activity")
                linkTitle: qsTr("View all")
                onChosen: root.controller.showPage("activity")
            }
            Card {
                width: parent.width
                padding: Theme.space14
                spacing: 0

                Repeater {
                    model: root.controller.events
                    delegate: EventLine {
                        width: parent ? parent.width : 0
                    }
                }
            }
        }
        Column {
            width: root.areAbreast ? root.inner - more.columnSpacing - more.wideColumn : root.inner
            spacing: PageMetrics.gap
            visible: root.controller.stackCount > 0

            BlockHeader {
                width: parent.width
                title: qsTr("Stacks")
                linkTitle: qsTr("Manage")
                onChosen: root.controller.showPage("stacks")
            }
            Card {
                width: parent.width
                padding: Theme.space14
                spacing: 0

                Repeater {
                    model: root.controller.stacks
                    delegate: StackQuickRow {
                        width: parent ? parent.width : 0
                        onStartChosen: root.controller.startStack(stackId)
                    }
                }
            }
        }
    }
}
