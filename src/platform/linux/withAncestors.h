#pragma once

#include "discovery/ListeningPort.h"

#include <string>
#include <vector>

namespace tarnvale {

/// `pid` and the processes that it descends from, nearest first, without processes 0 and 1; empty when there
/// is no such process.
[[nodiscard]] std::vector<Pid> withAncestors(Pid pid, const std::string &procFolder = "/proc");

} // namespace tarnvale
