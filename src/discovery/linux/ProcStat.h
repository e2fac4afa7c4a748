#pragma once

#include "discovery/ListeningPort.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// The fields of `/proc/<pid>/stat` that the scan uses (proc(5)). Times are in clock ticks.
struct ProcStat {
    std::string comm; ///< bytes as the process set them, cut at 15
    char state = '?';
    Pid ppid = 0;
    std::uint64_t minorFaults = 0;
    std::uint64_t userTime = 0;
    std::uint64_t systemTime = 0;
    std::int64_t threads = 0;
    std::uint64_t startTime = 0; ///< since boot
    std::uint64_t virtualSize = 0;
    std::int64_t residentPages = 0; ///< roughly: the kernel keeps a part of the count by processor

    bool operator==(const ProcStat &) const = default;

    [[nodiscard]] bool isZombie() const { return state == 'Z' || state == 'X'; }
    [[nodiscard]] std::uint64_t processorTime() const { return userTime + systemTime; }
};

/// Parses the whole file; nothing when it is cut short or isn't of this form.
///
/// The name may hold any byte, ")" and line feeds among them, so it ends at the last ")".
[[nodiscard]] std::optional<ProcStat> parseProcStat(std::string_view content);

} // namespace tarnvale
