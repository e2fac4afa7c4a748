#pragma once

#include "discovery/Machine.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// Where `LinuxMachine` reads. The defaults are the machine's own; tests lay out folders like them.
struct LinuxSources {
    std::string procFolder = "/proc";
    bool usesNetlink = true;
    std::optional<std::string> cgroupMount; ///< nothing: found among the mounts
    std::vector<std::string> applicationFolders;
    std::string ownExecutable;
    std::function<std::chrono::nanoseconds()> uptime; ///< since boot, sleep included
    std::function<Instant()> wallClock;
    std::function<ContainerMap()> dockerPorts;

    /// This machine as it is.
    [[nodiscard]] static LinuxSources machine();
};

/// The machine as the Linux kernel tells it: sockets over netlink, everything else from the process file
/// system and the control groups. No tool is run but docker, and that only when its proxies have changed or a
/// minute has passed.
///
/// It remembers which process holds which socket, and confirms it at every scan; the second and later scans
/// cost in proportion to the listeners.
class LinuxMachine : public Machine {
public:
    LinuxMachine();
    explicit LinuxMachine(LinuxSources sources);
    LinuxMachine(const LinuxMachine &) = delete;
    LinuxMachine &operator=(const LinuxMachine &) = delete;
    ~LinuxMachine() override;

    std::vector<ListeningPort> listeningSockets() override;
    ProcessDetailsMap processDetails(const std::vector<Pid> &pids) override;
    ProcessDetailsMap currentDetails(const std::vector<Pid> &pids) override;
    WorkingDirectories workingDirectories(const std::vector<Pid> &pids) override;
    ServiceLabels serviceLabels(const std::vector<Pid> &pids) override;
    ContainerMap containers(const std::vector<ListeningPort> &proxies) override;
    ProcessTable processTable(const std::vector<Pid> &pids) override;
    std::optional<std::string> hostApplication(Pid pid, const ProcessNode &node) override;
    std::string ownApplication() override;
    Instant now() override;

    /// How many processes' descriptors were looked through so far: what a test of the cost counts.
    [[nodiscard]] std::uint64_t walkCount() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace tarnvale
