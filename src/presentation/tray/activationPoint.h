#pragma once

#include <QPoint>
#include <QRect>

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnvale {

/// A screen, in logical pixels but for its place among the device pixels.
struct ScreenFrame {
    QRect geometry;
    QRect available;     ///< without what panels and docks keep for themselves
    double scale = 1;    ///< device pixels a logical one, above 0
    QPoint nativeOrigin; ///< in device pixels
};

/// A point in logical pixels and the screen that it is on.
struct ScreenPoint {
    QPoint point;
    std::size_t screen = 0;
    bool operator==(const ScreenPoint &) const = default;
};

/// What a tray's host means by the place of a click: hosts send device pixels or logical ones and don't say
/// which. Whichever lies on a screen is taken, device pixels when both do; nothing when neither does.
[[nodiscard]] std::optional<ScreenPoint> resolveActivation(const QPoint &place,
                                                           const std::vector<ScreenFrame> &screens);

/// The screen that a point in logical pixels is on; nothing when it is on none.
[[nodiscard]] std::optional<std::size_t> screenAt(const QPoint &point,
                                                  const std::vector<ScreenFrame> &screens);

} // namespace tarnvale
