// The place of a card in a `CardGrid`, with the card in it while that is in sight. Needs the grid; its component is the
// card, whose focus leads the grid's.
import QtQuick
import Tarnvale.Pages

Loader {
    id: root

    required property int index
    required property CardGrid cards
    readonly property int row: Math.floor(index / cards.columns)
    readonly property int column: index % cards.columns
    readonly property bool isCurrent: index === cards.current
    readonly property int place: cards.LayoutMirroring.enabled ? cards.columns - 1 - column : column

    x: place * (cards.cardWidth + PageMetrics.gap)
    y: row * cards.rowStep
    width: cards.cardWidth
    height: cards.cardHeight
    active: (row >= cards.firstRow && row <= cards.lastRow) || isCurrent || activeFocus
    onActiveFocusChanged: {
        if (!activeFocus)
            return;
        cards.current = index;
        cards.reveal(index);
    }
}
