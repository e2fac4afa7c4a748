#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnvale {

/// What came back when a port was asked for a page.
struct Health {
    enum class Kind : std::uint8_t {
        responding,  ///< an HTTP status of 499 or lower
        serverError, ///< an HTTP status of 500 or higher
        noResponse,  ///< nothing happened in time
        unknown,     ///< anything else: no HTTP, refused, closed
    };

    Kind kind = Kind::unknown;
    std::int64_t code = 0; ///< the HTTP status of the first two kinds, else 0

    [[nodiscard]] static Health responding(std::int64_t code) { return {Kind::responding, code}; }
    [[nodiscard]] static Health serverError(std::int64_t code) { return {Kind::serverError, code}; }
    [[nodiscard]] static Health noResponse() { return {Kind::noResponse, 0}; }
    [[nodiscard]] static Health unknown() { return {Kind::unknown, 0}; }

    /// The text that users read: "Responds (HTTP 200)".
    [[nodiscard]] std::string summary() const;

    bool operator==(const Health &) const = default;
};

} // namespace tarnvale
