#pragma once

#include "commands/CommandLineWorld.h"
#include "discovery/ListeningPort.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// Runs the command in `arguments`, the executable's path first, and returns the exit status. Nothing when
/// there is no command word among the first two: then the application should start.
[[nodiscard]] std::optional<std::int32_t> runCommandLine(const std::vector<std::string> &arguments,
                                                         const CommandLineWorld &world);

/// The same on this machine, with the process's own streams.
[[nodiscard]] std::optional<std::int32_t> runCommandLine(const std::vector<std::string> &arguments);

/// The table of `ports`, header included.
[[nodiscard]] std::string portTable(const std::vector<ListeningPort> &ports, Instant now);

} // namespace tarnvale
