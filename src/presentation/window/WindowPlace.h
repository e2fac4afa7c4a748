#pragma once

#include <QRect>
#include <QSize>

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// Where a window was left.
struct WindowPlace {
    QRect frame; ///< in logical pixels of the desktop, as it is when the window isn't maximized
    bool isMaximized = false;

    bool operator==(const WindowPlace &) const = default;
};

/// The place as it is stored: {"x":1,"y":2,"width":3,"height":4,"maximized":false}.
[[nodiscard]] std::string toJson(const WindowPlace &place);

/// What was stored; nothing when it is no place.
[[nodiscard]] std::optional<WindowPlace> windowPlaceFromJson(const std::string &json);

/// The frame for a window that was left in `stored`, on the screens that there are now, of which `screens`
/// gives the parts that are free of bars, the main one first: as it was if its title can still be reached,
/// else in the middle of the main screen. Never smaller than `least`, unless the screen is.
[[nodiscard]] QRect frameFor(const std::optional<WindowPlace> &stored, QSize preferred, QSize least,
                             const std::vector<QRect> &screens);

} // namespace tarnvale
