#pragma once

#include <QString>

#include <cstdint>
#include <set>

namespace tarnvale {

/// What the pointer is told over the tray's icon: "Tarnvale", or which watched ports have stopped, the lowest
/// first.
[[nodiscard]] QString trayToolTip(const std::set<std::int64_t> &stopped);

/// What a screen reader says for the icon.
[[nodiscard]] QString trayAccessibleText(const std::set<std::int64_t> &stopped);

} // namespace tarnvale
