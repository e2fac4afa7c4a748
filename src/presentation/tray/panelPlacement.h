#pragma once

#include "presentation/tray/activationPoint.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace tarnvale {

// All in logical pixels, but for the place of a click.

/// What is known of where the tray's icon is, best first.
struct AnchorHints {
    std::optional<QRect> icon;       ///< its own rectangle
    std::optional<QPoint> place;     ///< of the click, as the host sent it
    std::optional<QPoint> pointer;   ///< when it can be believed and is at the icon
    std::optional<QPoint> attention; ///< on the screen to use when nothing else is known; else the first one
};

/// The side of a screen on which its tray is.
enum class TrayEdge { top, bottom, left, right };

/// What the panel hangs from.
struct PanelAnchor {
    QRect rect;
    TrayEdge edge = TrayEdge::top;
    QRect visible; ///< the part of its screen that panels and docks leave free
    bool operator==(const PanelAnchor &) const = default;
};

/// Where the panel is. Its content grows and shrinks, and then one of its horizontal edges stays.
struct PanelPlacement {
    QRect frame;
    bool growsUp = false; ///< the bottom edge stays, else the top edge
    bool operator==(const PanelPlacement &) const = default;
};

/// Where the panel hangs from. A mere point in the strip that a desktop's panel keeps for itself stands for
/// the whole thickness of the strip. When nothing is known it is the top right corner of the screen. Nothing
/// without a screen.
[[nodiscard]] std::optional<PanelAnchor> anchorFor(const AnchorHints &hints,
                                                   const std::vector<ScreenFrame> &screens);

/// Hangs a panel of `size` from `anchor`: in its middle, a gap away from it, and inside the visible frame.
/// One too wide for the frame passes its left edge, one too tall the edge that it grows towards.
[[nodiscard]] PanelPlacement placePanel(const PanelAnchor &anchor, const QSize &size);

/// The same panel with its content at another size: its left edge and the edge that stays are where they
/// were.
[[nodiscard]] PanelPlacement resizePanel(const PanelPlacement &placement, const QSize &size);

/// The height that a panel at `placement` can grow to before it leaves `visible`.
[[nodiscard]] int roomFor(const PanelPlacement &placement, const QRect &visible);

} // namespace tarnvale
