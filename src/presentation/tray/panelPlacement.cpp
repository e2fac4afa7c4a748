#include "presentation/tray/panelPlacement.h"

#include <algorithm>
#include <array>

namespace tarnvale {

namespace {

constexpr int gap = 6;    ///< between the icon and the panel
constexpr int margin = 8; ///< between the panel and the sides of the visible frame

// A QRect's right() and bottom() are a pixel short of its edges.
int rightOf(const QRect &rect) {
    return rect.x() + rect.width();
}

int bottomOf(const QRect &rect) {
    return rect.y() + rect.height();
}

/// The side on which `icon` leaves the visible frame, else the nearest. In a corner that is the top or the
/// bottom: trays at the sides are rare.
TrayEdge edgeOf(const QRect &icon, const QRect &visible) {
    constexpr int corner = 64;
    const auto sideways = [](int distance) { return distance < 0 ? distance : distance + corner; };
    const QPoint middle = icon.center();
    const std::array<std::pair<int, TrayEdge>, 4> distances{
        {{middle.y() - visible.y(), TrayEdge::top},
         {bottomOf(visible) - 1 - middle.y(), TrayEdge::bottom},
         {sideways(rightOf(visible) - 1 - middle.x()), TrayEdge::right},
         {sideways(middle.x() - visible.x()), TrayEdge::left}}};
    return std::min_element(distances.begin(), distances.end(),
                            [](const auto &a, const auto &b) { return a.first < b.first; })
        ->second;
}

/// `point` grown to the thickness of the strip in which it is.
QRect throughStrip(const QPoint &point, const ScreenFrame &screen, TrayEdge edge) {
    QRect rect(point, QSize(1, 1));
    if (screen.available.contains(point))
        return rect;
    switch (edge) {
    case TrayEdge::top:
        rect.setBottom(screen.available.y() - 1);
        break;
    case TrayEdge::bottom:
        rect.setTop(bottomOf(screen.available));
        break;
    case TrayEdge::left:
        rect.setRight(screen.available.x() - 1);
        break;
    case TrayEdge::right:
        rect.setLeft(rightOf(screen.available));
        break;
    }
    return rect;
}

PanelAnchor anchorAt(const ScreenPoint &at, const std::vector<ScreenFrame> &screens) {
    const ScreenFrame &screen = screens[at.screen];
    const TrayEdge edge = edgeOf(QRect(at.point, QSize(1, 1)), screen.available);
    return {throughStrip(at.point, screen, edge), edge, screen.available};
}

/// So that the panel is `margin` away from both edges of the corner.
PanelAnchor cornerOf(const ScreenFrame &screen) {
    const QPoint corner(rightOf(screen.available) - margin, screen.available.y() + margin - gap);
    return {QRect(corner, QSize(0, 0)), TrayEdge::top, screen.available};
}

/// When the limits cross, the upper one wins.
int limited(int value, int lower, int upper) {
    return std::min(std::max(value, lower), upper);
}

int middledLeft(const PanelAnchor &anchor, const QSize &size) {
    const int left = anchor.rect.x() + (anchor.rect.width() - size.width()) / 2;
    return limited(left, anchor.visible.x() + margin, rightOf(anchor.visible) - size.width() - margin);
}

PanelPlacement below(const PanelAnchor &anchor, const QSize &size) {
    const int top = std::max(bottomOf(anchor.rect) + gap, anchor.visible.y());
    return {QRect(QPoint(middledLeft(anchor, size), top), size), false};
}

PanelPlacement above(const PanelAnchor &anchor, const QSize &size) {
    const int bottom = std::min(anchor.rect.y() - gap, bottomOf(anchor.visible));
    return {QRect(QPoint(middledLeft(anchor, size), bottom - size.height()), size), true};
}

/// Beside the icon it grows towards the middle of the screen.
PanelPlacement beside(const PanelAnchor &anchor, const QSize &size) {
    const QRect &visible = anchor.visible;
    const bool growsUp = anchor.rect.center().y() > visible.center().y();
    const int left = anchor.edge == TrayEdge::left
                         ? std::max(rightOf(anchor.rect) + gap, visible.x())
                         : std::min(anchor.rect.x() - gap, rightOf(visible)) - size.width();
    const int highest = visible.y() + margin;
    const int lowest = bottomOf(visible) - margin - size.height();
    const int top = growsUp ? limited(bottomOf(anchor.rect) - size.height(), highest, lowest)
                            : std::max(std::min(anchor.rect.y(), lowest), highest);
    return {QRect(QPoint(left, top), size), growsUp};
}

} // namespace

std::optional<PanelAnchor> anchorFor(const AnchorHints &hints, const std::vector<ScreenFrame> &screens) {
    if (screens.empty())
        return std::nullopt;
    if (hints.icon) {
        if (const auto screen = screenAt(hints.icon->center(), screens)) {
            const QRect &visible = screens[*screen].available;
            return PanelAnchor{*hints.icon, edgeOf(*hints.icon, visible), visible};
        }
    }
    if (const auto place = hints.place ? resolveActivation(*hints.place, screens) : std::nullopt)
        return anchorAt(*place, screens);
    if (const auto screen = hints.pointer ? screenAt(*hints.pointer, screens) : std::nullopt)
        return anchorAt({*hints.pointer, *screen}, screens);
    const auto screen = hints.attention ? screenAt(*hints.attention, screens) : std::nullopt;
    return cornerOf(screens[screen.value_or(0)]);
}

PanelPlacement placePanel(const PanelAnchor &anchor, const QSize &size) {
    switch (anchor.edge) {
    case TrayEdge::top:
        return below(anchor, size);
    case TrayEdge::bottom:
        return above(anchor, size);
    case TrayEdge::left:
    case TrayEdge::right:
        break;
    }
    return beside(anchor, size);
}

PanelPlacement resizePanel(const PanelPlacement &placement, const QSize &size) {
    QPoint origin = placement.frame.topLeft();
    if (placement.growsUp)
        origin.ry() += placement.frame.height() - size.height();
    return {QRect(origin, size), placement.growsUp};
}

int roomFor(const PanelPlacement &placement, const QRect &visible) {
    return placement.growsUp ? bottomOf(placement.frame) - visible.y() - margin
                             : bottomOf(visible) - margin - placement.frame.y();
}

} // namespace tarnvale
