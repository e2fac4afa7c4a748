#pragma once

#include <string>

namespace tarnvale {

/// An age in whole units, cut off: "3d 4h", "2h 5m", "7m", "12s". A negative one is "0s".
[[nodiscard]] std::string formatUptime(double seconds);

} // namespace tarnvale
