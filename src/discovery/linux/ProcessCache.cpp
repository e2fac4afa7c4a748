#include "discovery/linux/ProcessCache.h"

#include "discovery/linux/cgroups.h"
#include "discovery/linux/inParts.h"

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

std::function<bool(Pid)> ProcessCache::readingAhead(const std::vector<Pid> &pids) {
    for (const Pid pid : pids)
        prepared(pid);
    return [this](Pid pid) {
        Entry &entry = m_entries.find(pid)->second;
        readWithTexts(entry);
        return entry.process.mayHaveRun();
    };
}

void ProcessCache::readAhead(const std::vector<Pid> &pids) {
    constexpr std::size_t worthTwo = 128;
    std::vector<Entry *> entries;
    for (const Pid pid : pids)
        if (Entry &entry = prepared(pid); entry.scan != m_scan)
            entries.push_back(&entry);
    inParts(entries.size(), worthTwo, [&](std::size_t begin, std::size_t end, std::size_t) {
        for (std::size_t i = begin; i < end; ++i)
            readWithTexts(*entries[i]);
    });
}

TrackedProcess *ProcessCache::find(Pid pid) {
    Entry &entry = entryOf(pid);
    if (entry.scan != m_scan)
        read(prepared(pid));
    return entry.isAlive ? &entry.process : nullptr;
}

void ProcessCache::read(Entry &entry) const {
    entry.isAlive = entry.process.refresh(m_scan, m_uptime, entry.mayStayOpen);
    entry.scan = m_scan;
}

void ProcessCache::readWithTexts(Entry &entry) const {
    read(entry);
    if (entry.isAlive)
        entry.process.readTexts();
}

ProcessCache::Entry &ProcessCache::entryOf(Pid pid) {
    const auto found = m_entries.find(pid);
    if (found != m_entries.end())
        return found->second;
    return m_entries.emplace(pid, Entry{TrackedProcess(m_procFolder, pid)}).first->second;
}

/// The entry, ready to be read: whether its file may stay open is settled, and counted in when that is new.
/// Only a second scan shows that it pays.
ProcessCache::Entry &ProcessCache::prepared(Pid pid) {
    Entry &entry = entryOf(pid);
    const bool isHeld = entry.process.isHeldOpen();
    const bool mayBe = entry.scan != 0 && entry.scan != m_scan && m_heldOpen < m_mostHeldOpen;
    entry.mayStayOpen = isHeld || mayBe;
    if (mayBe && !isHeld)
        ++m_heldOpen;
    return entry;
}

bool ProcessCache::isServiceManager(TrackedProcess &process) {
    return process.stat().comm == "systemd" && (process.pid() == 1 || isManagerCgroup(process.cgroup()));
}

} // namespace tarnvale
