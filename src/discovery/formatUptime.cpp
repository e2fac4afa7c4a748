#include "discovery/formatUptime.h"

#include <algorithm>
#include <cstdint>

namespace tarnvale {

std::string formatUptime(double seconds) {
    constexpr double longest = 1e15; // beyond that a double counts no seconds, and a NaN counts none at all
    const auto age = static_cast<std::int64_t>(seconds > 0 ? std::min(seconds, longest) : 0);
    const auto two = [](std::int64_t first, const char *firstUnit, std::int64_t second,
                        const char *secondUnit) {
        return std::to_string(first) + firstUnit + " " + std::to_string(second) + secondUnit;
    };
    if (age >= 86400)
        return two(age / 86400, "d", age % 86400 / 3600, "h");
    if (age >= 3600)
        return two(age / 3600, "h", age % 3600 / 60, "m");
    if (age >= 60)
        return std::to_string(age / 60) + "m";
    return std::to_string(age) + "s";
}

} // namespace tarnvale
