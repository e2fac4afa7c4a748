// The local sites as cards that open in the browser. Needs its state.
import QtQuick
import Tarnvale.Design
import Tarnvale.Pages

Item {
    id: root

    required property SitesController controller

    PageFrame {
        id: page
        anchors.fill: parent
        maximumWidth: PageMetrics.maximumWidth
        margin: PageMetrics.margin

        readonly property real inner: PageMetrics.contentWidth(width)

        PageHeader {
            id: head
            width: page.inner
            height: PageMetrics.headHeight
            title: qsTr("Sites")
            subtitle: root.controller.isReady ? root.controller.subtitle : ""
        }
        CardGrid {
            id: grid
            width: page.inner
            page: page
            model: root.controller.sites
            minimumCardWidth: PageMetrics.siteCardWidth
            cardHeight: PageMetrics.siteCardHeight
            Accessible.name: qsTr("Sites")
            delegate: CardCell {
                id: cell

                required property string siteUrl
                required property string domain
                required property bool isSecured

                cards: grid
                sourceComponent: SiteCard {
                    domain: cell.domain
                    isSecured: cell.isSecured
                    activeFocusOnTab: cell.isCurrent || activeFocus
                    onActivated: root.controller.open(cell.siteUrl)
                }
            }
        }
    }
    EmptyPage {
        anchors.fill: parent
        anchors.topMargin: head.height + PageMetrics.margin
        visible: root.controller.isReady && root.controller.siteCount === 0
        symbol: "safari"
        title: qsTr("No local sites")
        message: qsTr("Laravel Herd and Valet sites (.test) appear here.")
    }
}
