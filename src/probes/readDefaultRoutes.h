#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace tarnvale {

/// From the name of an interface to the metric of its best default route; less is better.
using DefaultRoutes = std::map<std::string, std::uint32_t>;

/// The IPv4 default routes of this machine; none when they can't be read.
[[nodiscard]] DefaultRoutes readDefaultRoutes();

} // namespace tarnvale
