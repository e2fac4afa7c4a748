#pragma once

#include "discovery/Machine.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A process of a `FakeMachine`.
struct FakeProcess {
    Pid pid = 0;
    Pid ppid = 1;
    std::string path; ///< of the executable; its last component is the command that the sockets carry
    std::string args;
    std::optional<std::string> cwd;
    std::optional<Instant> startedAt; ///< the time of `add`, when it isn't given
    double cpu = 0;
    std::int64_t memoryKB = 0;
    std::optional<std::string>
        application;        ///< what `hostApplication` tells; else the ".app" bundle in `path`
    bool isReadable = true; ///< its details and folder can be read
    bool isForeign = false; ///< another user's, or a container's
};

/// A listening socket of a `FakeMachine`.
struct FakeSocket {
    Pid pid = 0;
    std::int64_t port = 0;
    bool isExposed = false;
    std::optional<std::string> command; ///< the command it is listed under, when `path` doesn't tell
};

/// A machine made of plain data, for everything that stands on a scan. Set up its parts, scan it, change
/// them, let time pass, scan again; nothing outside this object is read or changed.
///
/// Methods may be called while another thread asks, as when a server ends by a signal during a scan. The data
/// members may be touched only while nobody asks.
///
///     FakeMachine machine;
///     machine.add({.pid = 42, .path = "/usr/bin/node", .args = "node server.js", .cwd = "/home/me/shop"});
///     machine.listen(42, 3000);
///     machine.tick(5s);
///     machine.end(42);
class FakeMachine : public Machine {
public:
    std::map<Pid, FakeProcess> processes;
    std::vector<FakeSocket> sockets;
    ServiceLabels services;
    ContainerMap publishedPorts;
    std::string application = "/Applications/Tarnvale.app"; ///< this program itself
    bool tellsStart = true;      ///< details carry the exact start; without it only the age, as `ps` tells it
    bool hasProcessTable = true; ///< else the table comes back empty

    /// Runs on the asking thread just before `currentDetails` reads.
    std::function<void()> beforeCurrentDetails = [] {};

    /// What was asked, in order: the name of the question, then its pids or ports by rising number, as in
    /// "processDetails 42 43".
    [[nodiscard]] std::vector<std::string> questions() const;
    void forgetQuestions();

    void add(FakeProcess process);
    void listen(Pid pid, std::int64_t port, bool isExposed = false);

    /// The process goes, and its sockets with it.
    void end(Pid pid);

    /// When a process started; empty when there is none of this number.
    [[nodiscard]] std::optional<Instant> startOf(Pid pid) const;

    /// Moves the clock; it stands still otherwise.
    void tick(std::chrono::milliseconds time);

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

private:
    void record(std::string_view question, std::vector<std::int64_t> numbers = {});
    [[nodiscard]] ProcessDetailsMap detailsOf(const std::vector<Pid> &pids) const;

    mutable std::mutex m_mutex; ///< held by every public method; the private ones expect it held
    std::vector<std::string> m_questions;
    Instant m_now{std::chrono::sys_days{std::chrono::year{2025} / 3 / 1} + std::chrono::hours(12)};
};

} // namespace tarnvale
