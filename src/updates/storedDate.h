#pragma once

#include "discovery/Instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// `date` as it is stored: seconds since 2001-01-01 00:00:00 UTC, with fraction; see docs/data.md.
[[nodiscard]] std::string storedDate(Instant date);

/// The date in such a text; nothing when it is none, or one that no clock shows.
[[nodiscard]] std::optional<Instant> readStoredDate(std::string_view text);

} // namespace tarnvale
