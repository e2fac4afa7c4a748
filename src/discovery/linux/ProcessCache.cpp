#include "discovery/linux/ProcessCache.h"

#include "discovery/linux/cgroups.h"

#include <algorithm>
#include <sys/resource.h>

namespace tarnvale {

namespace {

/// How many `stat` files may stay open between scans: a quarter of what this program may open, the rest being
/// for its other parts.
std::size_t descriptorShare() {
    constexpr rlim_t most = 1024;
    rlimit limit{};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? std::min(limit.rlim_cur / 4, most) : 0;
}

} // namespace

ProcessCache::ProcessCache(int procFolder) : m_procFolder(procFolder), m_mostHeldOpen(descriptorShare()) {}

void ProcessCache::beginScan(std::chrono::nanoseconds uptime) {
    std::erase_if(m_entries,
                  [&](const auto &entry) { return entry.second.scan != m_scan || !entry.second.isAlive; });
    m_heldOpen = 0;
    for (const auto &[pid, entry] : m_entries)
        m_heldOpen += entry.process.isHeldOpen() ? 1u : 0u;
    ++m_scan;
    m_uptime = uptime;
}

PartedWork ProcessCache::readingAhead(const std::vector<Pid> &pids) {
    struct Reading {
        Entry *entry;
        bool mayStayOpen;
    };
    std::vector<Reading> readings;
    readings.reserve(pids.size());
    for (const Pid pid : pids)
        if (Entry &entry = entryOf(pid); entry.scan != m_scan)
            readings.push_back({&entry, mayStayOpen(entry)});
    const std::size_t count = readings.size();
    return {.count = count, .run = [this, readings = std::move(readings)](std::size_t i) {
                Entry &entry = *readings[i].entry;
                read(entry, readings[i].mayStayOpen);
                if (entry.isAlive)
                    entry.process.readTexts();
            }};
}

void ProcessCache::readAhead(const std::vector<Pid> &pids) {
    constexpr std::size_t worthTwo = 128;
    const PartedWork work = readingAhead(pids);
    inParts(work.count, worthTwo, [&](std::size_t begin, std::size_t end, std::size_t) {
        for (std::size_t i = begin; i < end; ++i)
            work.run(i);
    });
}

TrackedProcess *ProcessCache::find(Pid pid) {
    Entry &entry = entryOf(pid);
    if (entry.scan != m_scan)
        read(entry, mayStayOpen(entry));
    return entry.isAlive ? &entry.process : nullptr;
}

void ProcessCache::read(Entry &entry, bool mayStayOpen) const {
    entry.isAlive = entry.process.refresh(m_scan, m_uptime, mayStayOpen);
    entry.scan = m_scan;
}

ProcessCache::Entry &ProcessCache::entryOf(Pid pid) {
    const auto found = m_entries.find(pid);
    if (found != m_entries.end())
        return found->second;
    return m_entries.emplace(pid, Entry{TrackedProcess(m_procFolder, pid), 0, false}).first->second;
}

/// Whether the entry's file may stay open, counting it in when it is new. Only a second scan shows that it
/// pays.
bool ProcessCache::mayStayOpen(const Entry &entry) {
    if (entry.process.isHeldOpen())
        return true;
    if (entry.scan == 0 || m_heldOpen >= m_mostHeldOpen)
        return false;
    ++m_heldOpen;
    return true;
}

bool ProcessCache::isServiceManager(TrackedProcess &process) {
    return process.stat().comm == "systemd" && (process.pid() == 1 || isManagerCgroup(process.cgroup()));
}

} // namespace tarnvale
