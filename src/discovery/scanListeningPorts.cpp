#include "discovery/scanListeningPorts.h"

#include "discovery/Machine.h"
#include "discovery/SocketMerger.h"
#include "discovery/artisan.h"
#include "discovery/processTree.h"
#include "discovery/sortUnique.h"

namespace tarnvale {

namespace {

/// What the questions of one scan brought, until the records are filled.
struct Findings {
    ProcessDetailsMap details;
    ProcessDetailsMap parents;
    ArtisanMap artisans;
    WorkingDirectories directories;
    ServiceLabels services;
    ContainerMap containers;
    Instant now;
};

template<typename Map>
std::optional<typename Map::mapped_type> valueOf(const Map &map, typename Map::key_type key) {
    const auto entry = map.find(key);
    return entry == map.end() ? std::nullopt : std::optional(entry->second);
}

/// The parents of `details`, without the kernel and the first process.
std::vector<Pid> parentsOf(const ProcessDetailsMap &details) {
    std::vector<Pid> parents;
    for (const auto &[pid, process] : details)
        if (process.ppid >= 2)
            parents.push_back(process.ppid);
    sortUnique(parents);
    return parents;
}

std::vector<ListeningPort> proxiesAmong(const std::vector<ListeningPort> &ports) {
    std::vector<ListeningPort> proxies;
    for (const ListeningPort &port : ports)
        if (port.isDockerProxy())
            proxies.push_back(port);
    return proxies;
}

Findings ask(Machine &machine, const std::vector<ListeningPort> &ports) {
    Findings found;
    std::vector<Pid> pids = pidsOf(ports);
    found.details = machine.processDetails(pids);
    const std::vector<Pid> parents = parentsOf(found.details);
    if (!parents.empty())
        found.parents = machine.processDetails(parents);
    found.artisans = artisanParents(found.details, found.parents);

    std::vector<Pid> artisans;
    for (const auto &[worker, artisan] : found.artisans)
        artisans.push_back(artisan.pid);
    sortUnique(artisans);
    std::vector<Pid> withArtisans = pids;
    withArtisans.insert(withArtisans.end(), artisans.begin(), artisans.end());
    found.directories = machine.workingDirectories(withArtisans);

    pids.insert(pids.end(), parents.begin(), parents.end());
    found.services = machine.serviceLabels(pids);

    const auto proxies = proxiesAmong(ports);
    if (!proxies.empty())
        found.containers = machine.containers(proxies);
    found.now = machine.now();
    return found;
}

/// Turns the record of a worker into the one of the `artisan serve` above it. Use of the processor and of
/// memory stay the worker's, since it does the work.
void presentAsArtisan(ListeningPort &port, const ArtisanParent &artisan, const Findings &found) {
    port.workerPID = port.pid;
    port.pid = artisan.pid;
    if (auto folder = valueOf(found.directories, artisan.pid))
        port.cwd = std::move(folder);
    port.startedAt = startOf(artisan.details, found.now);
    port.args = artisan.details.args;
    port.hostApp.reset();
    port.agent.reset();
}

void fill(ListeningPort &port, const Findings &found) {
    port.cwd = valueOf(found.directories, port.pid);
    const auto details = found.details.find(port.pid);
    const bool hasDetails = details != found.details.end();
    auto service = valueOf(found.services, port.pid);
    if (hasDetails) {
        port.startedAt = startOf(details->second, found.now);
        port.args = details->second.args;
        port.cpu = details->second.cpu;
        port.memoryKB = details->second.memoryKB;
        if (!service)
            service = valueOf(found.services, details->second.ppid);
    }
    if (service) {
        port.service = std::move(service->label);
        port.serviceManager = service->manager;
    }
    if (port.isDockerProxy())
        port.container = valueOf(found.containers, port.port);
    const auto artisan = found.artisans.find(port.pid);
    if (artisan != found.artisans.end())
        presentAsArtisan(port, artisan->second, found);
}

} // namespace

std::vector<ListeningPort> scanListeningPorts(Machine &machine) {
    std::vector<ListeningPort> ports = machine.listeningSockets();
    if (ports.empty())
        return ports;
    const Findings found = ask(machine, ports);
    for (ListeningPort &port : ports)
        fill(port, found);
    if (!found.artisans.empty())
        sortByPort(ports);
    attributeProcessTree(ports, machine);
    return ports;
}

std::vector<ListeningPort> scanListeningPorts() {
    return scanListeningPorts(*makeDefaultMachine());
}

} // namespace tarnvale
