#pragma once

#include "discovery/Instant.h"
#include "discovery/ListeningPort.h"
#include "discovery/ProcessDetails.h"
#include "discovery/processTree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// From a process to its working directory.
using WorkingDirectories = std::unordered_map<Pid, std::string>;

/// A service, as its manager names it.
struct ServiceLabel {
    std::string label;
    ServiceManager manager = ServiceManager::launchd;

    bool operator==(const ServiceLabel &) const = default;
};

/// From the process that a service manager started to its service.
using ServiceLabels = std::unordered_map<Pid, ServiceLabel>;

/// From a published host port to "{name} · {image}".
using ContainerMap = std::unordered_map<std::int64_t, std::string>;

/// What a scan asks of the operating system: the one seam between the pipeline and the machine.
///
/// Every question may come back with holes or empty, never with an error, and every text is valid UTF-8. A
/// machine may remember things from one scan to the next to be faster or to measure a rate; what it tells is
/// true at the time of the call. Not thread-safe: one scan at a time.
class Machine {
public:
    Machine() = default;
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;
    virtual ~Machine() = default;

    /// The listening sockets, one record for each command and port under the lowest pid, sorted by port, then
    /// pid. `service` is set only for a socket that waits under a service manager for its first connection.
    /// This call begins a scan.
    [[nodiscard]] virtual std::vector<ListeningPort> listeningSockets() = 0;

    /// The details of those of `pids` that live and can be read, as this scan sees them.
    [[nodiscard]] virtual ProcessDetailsMap processDetails(const std::vector<Pid> &pids) = 0;

    /// The same, read at this very moment whatever the scan has seen: for checking a process before acting on
    /// it. `cpu` is the average since its start.
    [[nodiscard]] virtual ProcessDetailsMap currentDetails(const std::vector<Pid> &pids) = 0;

    /// The working directories of those of `pids` that can be read.
    [[nodiscard]] virtual WorkingDirectories workingDirectories(const std::vector<Pid> &pids) = 0;

    /// The services whose own process, the one that the manager started, is among `pids`. Others may be
    /// there.
    [[nodiscard]] virtual ServiceLabels serviceLabels(const std::vector<Pid> &pids) = 0;

    /// The running containers' published ports. Asked only when `proxies` isn't empty.
    [[nodiscard]] virtual ContainerMap containers(const std::vector<ListeningPort> &proxies) = 0;

    /// A process table that holds at least `pids` and their ancestors.
    [[nodiscard]] virtual ProcessTable processTable(const std::vector<Pid> &pids) = 0;

    /// The desktop application that process `pid`, `node` in the table, belongs to, as `hostApp` writes it.
    [[nodiscard]] virtual std::optional<std::string> hostApplication(Pid pid, const ProcessNode &node) = 0;

    /// This program itself, as `hostApplication` would write it.
    [[nodiscard]] virtual std::string ownApplication() = 0;

    /// The time by which ages become start times.
    [[nodiscard]] virtual Instant now();
};

/// The machine that this program runs on, read the way that is best on this system.
[[nodiscard]] std::unique_ptr<Machine> makeDefaultMachine();

/// Whether `details`, read at `now`, are those of the process that `port` was recorded for: the same command
/// line, and a start less than 3 seconds apart. False when the record lacks either.
[[nodiscard]] bool isSameProcess(const ListeningPort &port, const ProcessDetails &details, Instant now);

} // namespace tarnvale
