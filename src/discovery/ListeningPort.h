#pragma once

#include "discovery/Instant.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnvale {

/// Process ids are signed 32-bit numbers, as the system calls take them.
using Pid = std::int32_t;
static_assert(sizeof(pid_t) == sizeof(Pid));

/// Who starts and stops a service, and so whose words and commands apply to it.
enum class ServiceManager : std::uint8_t {
    launchd,     ///< the Mac's
    systemd,     ///< the system manager, process 1
    systemdUser, ///< a user's own manager
};

/// One process on one TCP port. A value that lives from one scan to the next.
struct ListeningPort {
    Pid pid = 0;
    std::string command;            ///< the process's own short name, never cut
    std::int64_t port = 0;          ///< as listed, without a range check
    bool isExposed = false;         ///< at least one socket is bound to more than loopback
    std::optional<std::string> cwd; ///< working directory, an absolute path
    std::optional<Instant> startedAt;
    std::optional<std::string> args;      ///< the command line, its words joined by blanks
    std::optional<std::string> service;   ///< launchd label or systemd unit
    std::optional<std::string> container; ///< "{name} · {image}" of the container that publishes the port
    std::optional<double> cpu;            ///< percent of one processor
    std::optional<std::int64_t> memoryKB; ///< resident size in kilobytes
    std::optional<Pid> workerPID; ///< the child that holds the socket when `pid` is an `artisan serve`
    std::optional<std::string>
        hostApp;                      ///< the application that started it: a ".app" bundle or a desktop file
    std::optional<std::string> agent; ///< the coding agent that started it: "Claude Code" or "Codex"
    ServiceManager serviceManager = ServiceManager::launchd; ///< means something only with `service`

    /// "{pid}:{port}": the identity of a row, and the key of every per-port map.
    [[nodiscard]] std::string id() const;

    /// The process belongs to a container runtime, so that it stands for a container.
    [[nodiscard]] bool isDockerProxy() const;

    /// The process belongs to an editor, a language server or a build daemon.
    [[nodiscard]] bool isNoise() const;

    /// The Homebrew formula behind `service`; nothing when Homebrew has no part in it.
    [[nodiscard]] std::optional<std::string> brewService() const;

    /// The part of `container` before " · "; nothing when that is empty.
    [[nodiscard]] std::optional<std::string> containerName() const;

    /// The tool behind the port as its user thinks of it ("Laravel", "postgresql@16", "node").
    [[nodiscard]] std::string displayName() const;

    /// The folder that the process works in, or its parent for a web root. It may be a generic one.
    [[nodiscard]] std::optional<std::string> projectName() const;

    /// There is a project name, and it tells the user something.
    [[nodiscard]] bool hasProject() const;

    /// The name by which the port is listed: container, else project, else `displayName()`.
    [[nodiscard]] std::string title() const;

    bool operator==(const ListeningPort &) const = default;
};

/// The processes of `ports`, sorted, each once.
[[nodiscard]] std::vector<Pid> pidsOf(const std::vector<ListeningPort> &ports);

} // namespace tarnvale

/// A hash over every field, so that records can be members of sets.
template<> struct std::hash<tarnvale::ListeningPort> {
    std::size_t operator()(const tarnvale::ListeningPort &port) const noexcept;
};
