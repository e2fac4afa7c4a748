#include "discovery/linux/SocketHolders.h"

#include "discovery/sortUnique.h"
#include "discovery/text.h"

#include <algorithm>
#include <iterator>
#include <sys/stat.h>

namespace tarnvale {

namespace {

struct ByInode {
    bool operator()(const Holder &holder, std::uint64_t inode) const { return holder.inode < inode; }
    bool operator()(std::uint64_t inode, const Holder &holder) const { return inode < holder.inode; }
};

struct ByPid {
    bool operator()(const WalkedProcess &process, Pid pid) const { return process.entry.pid < pid; }
};

std::vector<std::uint64_t> inodesOf(const std::vector<Listener> &listeners) {
    std::vector<std::uint64_t> inodes;
    for (const Listener &listener : listeners)
        if (listener.inode != 0)
            inodes.push_back(listener.inode);
    sortUnique(inodes);
    return inodes;
}

/// The children of the kernel's own first thread, which hold no sockets. Empty where the kernel doesn't tell.
std::vector<Pid> kernelThreads(int procFolder) {
    std::string content;
    readFileAt(procFolder, "2/task/2/children", content, 1u << 20);
    std::vector<Pid> threads{2};
    for (const std::string_view word : words(content))
        if (const auto pid = parseInteger<Pid>(word))
            threads.push_back(*pid);
    std::sort(threads.begin(), threads.end());
    return content.empty() ? std::vector<Pid>{} : threads;
}

} // namespace

void SocketHolders::update(const std::vector<Listener> &listeners, CgroupTree &cgroups,
                           const MayHaveRun &mayHaveRun) {
    ++m_update;
    m_inodes = inodesOf(listeners);
    keepConfirmed(mayHaveRun);
    m_walked.clear();
    // The kernel gives out a pid a moment before the process can be seen, and some sandboxes give a loadavg
    // of their own: a socket without a holder is reason enough to list.
    const bool hasForked = mayHaveForked();
    if (hasForked || hasDueSearch(unheld())) {
        auto newProcesses = takeNewProcesses();
        walk(newProcesses);
    }
    searchGroups(listeners, cgroups);
    searchEverywhere();
    audit();
}

std::span<const Holder> SocketHolders::holders(std::uint64_t inode) const {
    const auto [first, last] = std::equal_range(m_holders.begin(), m_holders.end(), inode, ByInode{});
    return {first, last};
}

std::vector<Pid> SocketHolders::owners() const {
    std::vector<Pid> owners;
    owners.reserve(m_holders.size());
    for (const Holder &holder : m_holders)
        owners.push_back(holder.pid);
    sortUnique(owners);
    return owners;
}

std::vector<Pid> SocketHolders::refused() const {
    std::vector<Pid> refused;
    for (const WalkedProcess &process : m_processes)
        if (process.isRefused)
            refused.push_back(process.entry.pid);
    return refused;
}

void SocketHolders::keepConfirmed(const MayHaveRun &mayHaveRun) {
    std::erase_if(m_holders, [&](const Holder &holder) {
        return !std::binary_search(m_inodes.begin(), m_inodes.end(), holder.inode);
    });
    // A process that was walked in the last update may have run between that and the look at its counters.
    m_holders = confirmedHolders(m_procFolder, std::move(m_holders), [&](Pid pid) {
        const bool hasRested = mayHaveRun && !mayHaveRun(pid);
        return !hasRested || isWalked(pid);
    });
    std::erase_if(m_searches, [&](const auto &entry) {
        return !std::binary_search(m_inodes.begin(), m_inodes.end(), entry.first);
    });
}

/// Whether a process may have been made since the last update: the last word of loadavg is the pid that was
/// given out last (proc(5)). Reading it is far cheaper than listing all processes.
bool SocketHolders::mayHaveForked() {
    constexpr std::uint64_t longestTrust = 16;
    std::string content;
    readFileAt(m_procFolder, "loadavg", content, 4096);
    const auto fields = words(content);
    const auto last = fields.size() < 5 ? std::nullopt : parseInteger<std::int64_t>(fields[4]);
    const bool isSame = last && last == m_lastPid;
    m_lastPid = last;
    return !isSame || m_update % longestTrust == 0;
}

/// Lists the processes, forgets those that are gone, and returns those that weren't there before.
std::vector<WalkedProcess> SocketHolders::takeNewProcesses() {
    std::vector<WalkedProcess> listed;
    std::vector<WalkedProcess> added;
    const auto kernel = m_processes.empty() ? kernelThreads(m_procFolder) : std::vector<Pid>{};
    auto before = m_processes.begin();
    for (const ProcessEntry &entry : listProcesses(m_procFolder)) {
        while (before != m_processes.end() && before->entry.pid < entry.pid)
            ++before;
        const bool wasThere = before != m_processes.end() && before->entry == entry;
        const bool isKernelThread = std::binary_search(kernel.begin(), kernel.end(), entry.pid);
        listed.push_back(wasThere ? *before
                                  : WalkedProcess{.entry = entry, .isKernelThread = isKernelThread});
        if (!wasThere && !isKernelThread)
            added.push_back(listed.back());
    }
    m_processes = std::move(listed);
    return added;
}

void SocketHolders::walk(std::vector<WalkedProcess> &processes) {
    if (processes.empty())
        return;
    m_walkCount += processes.size();
    std::vector<Holder> found = walkDescriptors(m_procFolder, processes, m_inodes);
    for (const WalkedProcess &process : processes) {
        if (WalkedProcess *entry = known(process.entry.pid))
            *entry = process;
        m_walked.push_back(process.entry.pid);
    }
    sortUnique(m_walked);
    m_holders.insert(m_holders.end(), found.begin(), found.end());
    sortUniqueHolders(m_holders);
}

void SocketHolders::searchGroups(const std::vector<Listener> &listeners, CgroupTree &cgroups) {
    const auto missing = unheld();
    std::vector<std::uint64_t> groups;
    for (const Listener &listener : listeners)
        if (listener.cgroup && std::binary_search(missing.begin(), missing.end(), listener.inode))
            groups.push_back(*listener.cgroup);
    sortUnique(groups);

    std::vector<WalkedProcess> candidates;
    for (const std::uint64_t group : groups) {
        const auto path = cgroups.path(group);
        // Without a service manager everything is in the root group: that is a search everywhere.
        if (!path || *path == "/")
            continue;
        for (const Pid pid : cgroups.processes(*path))
            if (const WalkedProcess *process = known(pid);
                process != nullptr && !process->isRefused && !isWalked(pid))
                candidates.push_back(*process);
    }
    walk(candidates);
}

void SocketHolders::searchEverywhere() {
    const auto missing = unheld();
    if (!hasDueSearch(missing))
        return;
    std::vector<WalkedProcess> rest;
    for (const WalkedProcess &process : m_processes)
        if (!process.isKernelThread && !isWalked(process.entry.pid))
            rest.push_back(process);
    walk(rest);
    constexpr std::uint64_t longestWait = 64;
    for (const std::uint64_t inode : unheld()) {
        Search &search = m_searches[inode];
        search.due = m_update + search.wait;
        search.wait = std::min(2 * search.wait, longestWait);
    }
}

/// Looks at a few old processes in turn. Since Linux 6.2 the size of a process's fd folder is the number of
/// its descriptors (proc(5)); where it isn't, a few are looked through each time.
void SocketHolders::audit() {
    constexpr std::size_t share = 32;
    constexpr std::size_t most = 64;
    constexpr std::int64_t mostDescriptors = 256;
    std::vector<WalkedProcess> changed;
    std::int64_t descriptors = 0;
    const std::size_t count = std::min(most, (m_processes.size() + share - 1) / share);
    for (std::size_t i = 0; i < count && descriptors < mostDescriptors; ++i) {
        m_auditPosition = (m_auditPosition + 1) % m_processes.size();
        const WalkedProcess &process = m_processes[m_auditPosition];
        struct stat table {};
        // Our own are one more while they are looked through.
        if (process.entry.pid != getpid() && process.descriptors > 0 && !process.isRefused &&
            fstatat(m_procFolder, ProcPath(process.entry.pid, "fd").get(), &table, 0) == 0 &&
            table.st_size != process.descriptors && !isWalked(process.entry.pid)) {
            changed.push_back(process);
            descriptors += process.descriptors;
        }
    }
    walk(changed);
}

bool SocketHolders::hasDueSearch(const std::vector<std::uint64_t> &missing) const {
    return std::any_of(missing.begin(), missing.end(), [&](std::uint64_t inode) {
        const auto search = m_searches.find(inode);
        return search == m_searches.end() || search->second.due <= m_update;
    });
}

std::vector<std::uint64_t> SocketHolders::unheld() const {
    std::vector<std::uint64_t> missing;
    for (const std::uint64_t inode : m_inodes)
        if (holders(inode).empty())
            missing.push_back(inode);
    return missing;
}

bool SocketHolders::isWalked(Pid pid) const {
    return std::binary_search(m_walked.begin(), m_walked.end(), pid);
}

WalkedProcess *SocketHolders::known(Pid pid) {
    const auto found = std::lower_bound(m_processes.begin(), m_processes.end(), pid, ByPid{});
    return found == m_processes.end() || found->entry.pid != pid ? nullptr : &*found;
}

} // namespace tarnvale
