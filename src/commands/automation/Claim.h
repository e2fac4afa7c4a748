#pragma once

#include <QString>

#include <cstdint>

namespace tarnvale {

/// What came of a program's claim to be the only one of its user's session.
struct Claim {
    enum class Kind : std::uint8_t {
        taken,       ///< this is the first
        answered,    ///< another one is there, and it has done what it was asked
        refused,     ///< another one is there and won't do it; `reason` tells why
        silent,      ///< another one is there and doesn't answer
        unavailable, ///< there are no means to find out
    };

    Kind kind = Kind::unavailable;
    QString reason;
};

} // namespace tarnvale
