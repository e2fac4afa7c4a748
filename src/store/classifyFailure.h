#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// Why a command failed, as far as its log tells.
struct LaunchFailure {
    bool isConflict = false;          ///< the port that it wants is taken
    std::optional<std::int64_t> port; ///< that port, when the log names it
    std::string line;                 ///< of any other failure: the last line that isn't blank

    bool operator==(const LaunchFailure &) const = default;
};

/// Reads the end of a log. The latest line about a taken port decides.
[[nodiscard]] LaunchFailure classifyFailure(std::string_view text);

} // namespace tarnvale
