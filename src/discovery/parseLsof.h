#pragma once

#include "discovery/ListeningPort.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// The records in the output of `lsof -nP +c 0 -iTCP -sTCP:LISTEN -Fpcn` (lsof(8), "OUTPUT FOR OTHER
/// PROGRAMS"). Lines that can't be used are skipped.
[[nodiscard]] std::vector<ListeningPort> parseListeningSockets(std::string_view text);

/// The working directories in the output of `lsof -a -d cwd -p … -Fpn`.
[[nodiscard]] std::unordered_map<Pid, std::string> parseWorkingDirectories(std::string_view text);

} // namespace tarnvale
