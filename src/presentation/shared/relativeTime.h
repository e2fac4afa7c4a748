#pragma once

#include "discovery/Instant.h"

#include <QDateTime>
#include <QString>

namespace tarnvale {

/// How long ago `date` was, as one says it in short: "now", "5 min. ago", "2 hr. ago", "yesterday",
/// "3 days ago", "last wk.". A date to come counts as now. Days are counted by the user's calendar.
[[nodiscard]] QString relativeTime(Instant date, Instant now);

/// `instant` on the user's clock.
[[nodiscard]] QDateTime localTime(Instant instant);

} // namespace tarnvale
