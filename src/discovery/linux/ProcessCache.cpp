#include "discovery/linux/ProcessCache.h"

#include "discovery/linux/cgroups.h"

namespace tarnvale {

namespace {

/// How many `stat` files stay open between scans: enough for an ordinary machine, and far from the usual
/// limit of 1,024 descriptors that this program's other parts share.
constexpr std::size_t mostHeldOpen = 128;

} // namespace

void ProcessCache::beginScan(std::chrono::nanoseconds uptime) {
    std::erase_if(m_entries,
                  [&](const auto &entry) { return entry.second.scan != m_scan || !entry.second.isAlive; });
    m_heldOpen = 0;
    for (const auto &[pid, entry] : m_entries)
        m_heldOpen += entry.process.isHeldOpen() ? 1u : 0u;
    ++m_scan;
    m_uptime = uptime;
}

TrackedProcess *ProcessCache::find(Pid pid) {
    const auto [found, isNew] =
        m_entries.try_emplace(pid, Entry{TrackedProcess(m_procFolder, pid), 0, false});
    Entry &entry = found->second;
    if (entry.scan != m_scan) {
        const bool wasHeldOpen = entry.process.isHeldOpen();
        entry.isAlive = entry.process.refresh(m_scan, m_uptime, wasHeldOpen || m_heldOpen < mostHeldOpen);
        entry.scan = m_scan;
        if (entry.process.isHeldOpen() && !wasHeldOpen)
            ++m_heldOpen;
    }
    return entry.isAlive ? &entry.process : nullptr;
}

bool ProcessCache::isServiceManager(TrackedProcess &process) {
    return process.stat().comm == "systemd" && (process.pid() == 1 || isManagerCgroup(process.cgroup()));
}

} // namespace tarnvale
