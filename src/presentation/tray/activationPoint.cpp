#include "presentation/tray/activationPoint.h"

#include <QRectF>
#include <QtMath>

#include <algorithm>

namespace tarnvale {

namespace {

/// Where on `screen` the device pixel `place` is; nothing when it is elsewhere.
std::optional<QPoint> logicalOn(const ScreenFrame &screen, const QPoint &place) {
    // In doubles: a host may send any integer.
    const QPointF offset = (QPointF(place) - QPointF(screen.nativeOrigin)) / screen.scale;
    const QSizeF size(screen.geometry.size());
    if (offset.x() < 0 || offset.y() < 0 || offset.x() >= size.width() || offset.y() >= size.height())
        return std::nullopt;
    return screen.geometry.topLeft() + QPoint(qFloor(offset.x()), qFloor(offset.y()));
}

} // namespace

std::optional<ScreenPoint> resolveActivation(const QPoint &place, const std::vector<ScreenFrame> &screens) {
    for (std::size_t i = 0; i < screens.size(); ++i)
        if (const auto point = logicalOn(screens[i], place))
            return ScreenPoint{*point, i};
    if (const auto screen = screenAt(place, screens))
        return ScreenPoint{place, *screen};
    return std::nullopt;
}

std::optional<std::size_t> screenAt(const QPoint &point, const std::vector<ScreenFrame> &screens) {
    const auto found = std::find_if(screens.begin(), screens.end(), [&point](const ScreenFrame &screen) {
        return screen.geometry.contains(point);
    });
    return found == screens.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - screens.begin()));
}

} // namespace tarnvale
