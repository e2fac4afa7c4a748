#pragma once

#include "discovery/ListeningPort.h"
#include "probes/LogSource.h"

#include <optional>
#include <string>

namespace tarnvale {

class Tools;

/// Where the output of the process of `port` can be read: its container, else the log of its launch, which
/// would be at `launchLog`, else the log that its project's framework keeps. Nothing when none is there.
///
/// Blocks as long as the disk does. Any thread.
[[nodiscard]] std::optional<LogSource>
findLogSource(const ListeningPort &port, const std::optional<std::string> &launchLog, const Tools &tools);

} // namespace tarnvale
