#pragma once

#include "discovery/Instant.h"
#include "discovery/ListeningPort.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tarnvale {

/// What one reading tells about one process.
struct ProcessDetails {
    Pid ppid = 0;
    double uptime = 0; ///< seconds
    std::string args;  ///< the command line, its words joined by blanks; may be empty
    double cpu = 0;    ///< percent of one processor
    std::int64_t memoryKB = 0;
    std::optional<Instant> startedAt; ///< the exact start, where the system tells it
    bool isForeign = false; ///< it runs as another user or sees other files, as in a container; told only by
                            ///< a fresh reading

    bool operator==(const ProcessDetails &) const = default;
};

using ProcessDetailsMap = std::unordered_map<Pid, ProcessDetails>;

/// The details in the output of `ps -o pid=,ppid=,etime=,%cpu=,rss=,args=`. A line without a usable pid,
/// ppid or age is skipped; other numbers that can't be read are 0.
[[nodiscard]] ProcessDetailsMap parseProcessDetails(std::string_view text);

/// When the process started: its own word, else `now` minus its age.
[[nodiscard]] Instant startOf(const ProcessDetails &details, Instant now);

} // namespace tarnvale
