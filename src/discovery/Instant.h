#pragma once

#include <chrono>

namespace tarnvale {

/// A point of wall-clock time. Whole milliseconds, so that one start time read twice compares equal.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

} // namespace tarnvale
