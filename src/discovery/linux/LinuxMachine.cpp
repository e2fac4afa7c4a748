#include "discovery/linux/LinuxMachine.h"

#include "discovery/SocketMerger.h"
#include "discovery/docker.h"
#include "discovery/executablePath.h"
#include "discovery/linux/ContainerAnswer.h"
#include "discovery/linux/DesktopEntries.h"
#include "discovery/linux/ForeignOwners.h"
#include "discovery/linux/ProcessCache.h"
#include "discovery/linux/SocketDiag.h"
#include "discovery/linux/SocketHolders.h"
#include "discovery/linux/applicationIds.h"
#include "discovery/linux/cgroups.h"
#include "discovery/linux/parseProcNetTcp.h"
#include "discovery/linux/procFiles.h"

#include <ctime>
#include <fcntl.h>

namespace tarnvale {

namespace {

using std::chrono::nanoseconds;
using namespace std::chrono_literals;

constexpr std::string_view ownId = "dev.tarnvale.Tarnvale";

nanoseconds bootClock() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

std::string findCgroupMount() {
    std::string mounts;
    readFileAt(AT_FDCWD, "/proc/self/mounts", mounts, 1u << 20);
    return parseCgroupMount(mounts);
}

} // namespace

LinuxSources LinuxSources::machine() {
    return {
        .cgroupMount = std::nullopt,
        .applicationFolders = tarnvale::applicationFolders(),
        .ownExecutable = executablePath(),
        .uptime = bootClock,
        .wallClock =
            [] { return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()); },
        .dockerPorts = [] { return queryDockerPorts(); }};
}

struct LinuxMachine::State {
    explicit State(LinuxSources given)
        : sources(std::move(given)),
          procFolder(openFolderAt(AT_FDCWD, sources.procFolder.c_str())),
          cgroups(sources.cgroupMount ? *sources.cgroupMount : findCgroupMount()),
          holders(procFolder.get()),
          processes(procFolder.get()),
          foreignOwners(processes, cgroups),
          desktopEntries(sources.applicationFolders) {}

    void beginScan();
    std::vector<Listener> listeners();
    void addOwners(const Listener &listener, SocketMerger &merger);
    void addWaiting(const Listener &listener, TrackedProcess &manager, SocketMerger &merger);
    Instant startOf(const TrackedProcess &process) const;
    ProcessDetails detailsOf(TrackedProcess &process) const;
    std::optional<ServiceLabel> serviceOf(TrackedProcess &process);
    std::string ownPath();

    LinuxSources sources;
    FileDescriptor procFolder;
    SocketDiag diag;
    CgroupTree cgroups;
    SocketHolders holders;
    ProcessCache processes;
    ForeignOwners foreignOwners;
    DesktopEntries desktopEntries;
    ContainerAnswer containers;
    Instant bootTime{};
    unsigned scan = 0;
    int netlinkPause = 0; ///< scans until it is tried again
};

void LinuxMachine::State::beginScan() {
    const nanoseconds uptime = sources.uptime();
    processes.beginScan(uptime);
    cgroups.beginScan();
    // An application is installed now and then: no need to look at its folders all the time.
    constexpr unsigned scansBetweenLooks = 8;
    if (scan++ % scansBetweenLooks == 0)
        desktopEntries.beginScan();
    // One moment of boot for all scans, so that a start time is the same each time, until the clock is set.
    const Instant measured = sources.wallClock() - std::chrono::floor<std::chrono::milliseconds>(uptime);
    if (std::chrono::abs(measured - bootTime) > 2s)
        bootTime = measured;
}

std::vector<Listener> LinuxMachine::State::listeners() {
    // Where netlink is refused it stays so, and asking may take a second.
    constexpr int scansAfterRefusal = 64;
    if (sources.usesNetlink && netlinkPause == 0) {
        if (auto answer = diag.listeners())
            return std::move(*answer);
        netlinkPause = scansAfterRefusal;
    }
    netlinkPause -= netlinkPause > 0 ? 1 : 0;
    std::vector<Listener> all;
    std::string content;
    for (const char *table : {"net/tcp", "net/tcp6"}) {
        readFileAt(procFolder.get(), table, content, 64u << 20);
        const auto rows = parseProcNetTcp(content);
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

void LinuxMachine::State::addOwners(const Listener &listener, SocketMerger &merger) {
    if (listener.inode == 0)
        return; // the kernel's own
    const auto held = holders.holders(listener.inode);
    TrackedProcess *manager = nullptr;
    bool hasOwner = false;
    for (const Holder &holder : held) {
        TrackedProcess *process = processes.find(holder.pid);
        if (process == nullptr)
            continue;
        // A service manager keeps the sockets that it hands to its services.
        if (processes.isServiceManager(*process)) {
            manager = process;
            continue;
        }
        hasOwner = true;
        merger.add(holder.pid, process->command(), listener.port, !listener.isLoopback);
    }
    if (!hasOwner && manager != nullptr)
        addWaiting(listener, *manager, merger);
    if (!held.empty())
        return;
    if (const auto owner = foreignOwners.ownerOf(listener))
        merger.add(*owner, processes.find(*owner)->command(), listener.port, !listener.isLoopback);
}

/// A socket that waits for its first connection: its unit stands for it. A manager must never look like a
/// plain process that may be stopped, so without a unit the socket is left out.
void LinuxMachine::State::addWaiting(const Listener &listener, TrackedProcess &manager,
                                     SocketMerger &merger) {
    const auto group = listener.cgroup ? cgroups.path(*listener.cgroup) : std::nullopt;
    const std::string unit(unitOfCgroup(group.value_or(std::string())));
    if (unit.ends_with(".socket"))
        merger.add(manager.pid(), manager.command(), listener.port, !listener.isLoopback, unit,
                   manager.pid() == 1 ? ServiceManager::systemd : ServiceManager::systemdUser);
}

Instant LinuxMachine::State::startOf(const TrackedProcess &process) const {
    return bootTime + process.start();
}

ProcessDetails LinuxMachine::State::detailsOf(TrackedProcess &process) const {
    return {.ppid = process.stat().ppid,
            .uptime = std::chrono::duration<double>(process.age()).count(),
            .args = process.args(),
            .cpu = process.cpu(),
            .memoryKB = process.memoryKB(),
            .startedAt = startOf(process)};
}

std::optional<ServiceLabel> LinuxMachine::State::serviceOf(TrackedProcess &process) {
    TrackedProcess *parent = processes.find(process.stat().ppid);
    if (parent == nullptr || !processes.isServiceManager(*parent))
        return std::nullopt;
    const std::string_view unit = unitOfCgroup(process.cgroup());
    if (!isServiceUnit(unit))
        return std::nullopt;
    return ServiceLabel{std::string(unit),
                        parent->pid() == 1 ? ServiceManager::systemd : ServiceManager::systemdUser};
}

std::string LinuxMachine::State::ownPath() {
    return desktopEntries.findById(std::string(ownId)).value_or(std::string(ownId));
}

LinuxMachine::LinuxMachine() : LinuxMachine(LinuxSources::machine()) {}

LinuxMachine::LinuxMachine(LinuxSources sources) : m_state(std::make_unique<State>(std::move(sources))) {
    m_state->beginScan();
}

LinuxMachine::~LinuxMachine() = default;

std::vector<ListeningPort> LinuxMachine::listeningSockets() {
    m_state->beginScan();
    const std::vector<Listener> listeners = m_state->listeners();
    // Who held a socket in the last scan most likely does so now.
    const MayHaveRun mayHaveRun = m_state->processes.readingAhead(m_state->holders.owners());
    m_state->holders.update(listeners, m_state->cgroups, mayHaveRun);
    m_state->foreignOwners.beginScan(m_state->holders.refused());
    m_state->processes.readAhead(m_state->holders.owners());
    SocketMerger merger;
    for (const Listener &listener : listeners)
        m_state->addOwners(listener, merger);
    return merger.take();
}

ProcessDetailsMap LinuxMachine::processDetails(const std::vector<Pid> &pids) {
    ProcessDetailsMap details;
    for (const Pid pid : pids)
        if (TrackedProcess *process = m_state->processes.find(pid))
            details[pid] = m_state->detailsOf(*process);
    return details;
}

ProcessDetailsMap LinuxMachine::currentDetails(const std::vector<Pid> &pids) {
    ProcessDetailsMap details;
    for (const Pid pid : pids) {
        TrackedProcess process(m_state->procFolder.get(), pid);
        if (!process.refresh(0, m_state->sources.uptime(), false) || process.hasEnded())
            continue;
        details[pid] = m_state->detailsOf(process);
        details[pid].isForeign = process.isForeign();
    }
    return details;
}

WorkingDirectories LinuxMachine::workingDirectories(const std::vector<Pid> &pids) {
    WorkingDirectories directories;
    for (const Pid pid : pids)
        if (TrackedProcess *process = m_state->processes.find(pid))
            if (const auto &folder = process->cwd())
                directories[pid] = *folder;
    return directories;
}

ServiceLabels LinuxMachine::serviceLabels(const std::vector<Pid> &pids) {
    ServiceLabels labels;
    for (const Pid pid : pids)
        if (TrackedProcess *process = m_state->processes.find(pid))
            if (auto label = m_state->serviceOf(*process))
                labels[pid] = std::move(*label);
    return labels;
}

ContainerMap LinuxMachine::containers(const std::vector<ListeningPort> &proxies) {
    ContainerAnswer::Key key;
    for (const ListeningPort &proxy : proxies) {
        const TrackedProcess *process = m_state->processes.find(proxy.pid);
        key.emplace_back(proxy.pid, process ? std::optional(m_state->startOf(*process)) : std::nullopt,
                         proxy.port);
    }
    return m_state->containers.get(std::move(key), m_state->sources.uptime(), m_state->sources.dockerPorts);
}

ProcessTable LinuxMachine::processTable(const std::vector<Pid> &pids) {
    ProcessTable table;
    for (Pid pid : pids) {
        while (pid >= 2 && !table.contains(pid)) {
            TrackedProcess *process = m_state->processes.find(pid);
            if (process == nullptr)
                break;
            table[pid] = {process->stat().ppid, process->command()};
            pid = process->stat().ppid;
        }
    }
    return table;
}

std::optional<std::string> LinuxMachine::hostApplication(Pid pid, const ProcessNode &) {
    TrackedProcess *process = m_state->processes.find(pid);
    if (process == nullptr)
        return std::nullopt;
    if (!process->executable().empty() && process->executable() == m_state->sources.ownExecutable)
        return m_state->ownPath();
    for (const std::string &id : applicationIds(process->cgroup())) {
        if (id == ownId)
            return m_state->ownPath();
        if (auto path = m_state->desktopEntries.findById(id))
            return path;
    }
    return m_state->desktopEntries.findByExecutable(process->executable());
}

std::string LinuxMachine::ownApplication() {
    return m_state->ownPath();
}

Instant LinuxMachine::now() {
    return m_state->sources.wallClock();
}

std::uint64_t LinuxMachine::walkCount() const {
    return m_state->holders.walkCount();
}

std::unique_ptr<Machine> makeDefaultMachine() {
    return std::make_unique<LinuxMachine>();
}

} // namespace tarnvale
