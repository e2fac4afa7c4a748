#pragma once

#include "platform/Tools.h"
#include "probes/LogSource.h"

#include <string>

namespace tarnvale {

/// The last 48,000 bytes of a file, from the first whole line on, or the last 300 lines of a container, as
/// valid UTF-8, escape sequences included. Empty when it can't be read.
///
/// Blocks: a container for at most about 4 seconds. Any thread.
[[nodiscard]] std::string readLogSource(const LogSource &source, const Tools &tools);

} // namespace tarnvale
