#pragma once

#include "discovery/linux/TrackedProcess.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// The processes that scans ask about. Each is read once in a scan, however often it is asked for.
class ProcessCache {
public:
    /// `procFolder` stays open as long as this object lives.
    explicit ProcessCache(int procFolder);

    /// Begins a scan at `uptime`, the time since boot, and forgets what the last one didn't ask for.
    void beginScan(std::chrono::nanoseconds uptime);

    /// Reads `pids` (sorted, each once) with their texts, all at once, since they will be asked for.
    void readAhead(const std::vector<Pid> &pids);

    /// The same as work for others to do, on any thread and for each of `pids` once, before anything else is
    /// asked in this scan: it tells whether the process may have run since the last one.
    [[nodiscard]] std::function<bool(Pid)> readingAhead(const std::vector<Pid> &pids);

    /// The process as it is in this scan; null when there is none. Valid until the next `beginScan`.
    [[nodiscard]] TrackedProcess *find(Pid pid);

    /// It runs services: the system's first process or a user's manager, under systemd.
    [[nodiscard]] bool isServiceManager(TrackedProcess &process);

private:
    struct Entry {
        TrackedProcess process;
        std::uint64_t scan = 0; ///< in which it was read last
        bool isAlive = false;
        bool mayStayOpen = false;
    };

    void read(Entry &entry) const;
    void readWithTexts(Entry &entry) const;
    Entry &entryOf(Pid pid);
    Entry &prepared(Pid pid);

    int m_procFolder;
    std::size_t m_mostHeldOpen;
    std::uint64_t m_scan = 0;
    std::chrono::nanoseconds m_uptime{};
    std::size_t m_heldOpen = 0;
    std::unordered_map<Pid, Entry> m_entries;
};

} // namespace tarnvale
