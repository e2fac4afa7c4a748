#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The last 400 lines of a log, empty ones included, without the escape sequences that colour text and move
/// the cursor ("ESC [ 31 m"). A log that ends in a line feed has an empty last line.
[[nodiscard]] std::vector<std::string> logLines(std::string_view text);

/// How a line of a log stands out.
enum class LogLineKind : std::uint8_t {
    plain,
    warning,
    error,
};

/// What the words in a line say about it: "0 errors" is an error, too.
[[nodiscard]] LogLineKind logLineKind(std::string_view line);

} // namespace tarnvale
