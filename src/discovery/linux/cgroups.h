#pragma once

#include "discovery/ListeningPort.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// The control group of a process from `/proc/<pid>/cgroup` (cgroups(7)): the path in the unified hierarchy,
/// else systemd's own; empty when there is neither.
[[nodiscard]] std::string parseCgroupFile(std::string_view content);

/// The pids in a `cgroup.procs` file. Processes of other pid namespaces, shown as 0, are left out.
[[nodiscard]] std::vector<Pid> parseCgroupProcs(std::string_view content);

/// The innermost systemd unit on a group's path; a service may keep groups of its own below. Empty without
/// one.
[[nodiscard]] std::string_view unitOfCgroup(std::string_view path);

/// `unit` is a service that a developer may think of as one: not the system's or the desktop's own, not a
/// desktop application, and not a container engine, whose ports are told by their containers.
[[nodiscard]] bool isServiceUnit(std::string_view unit);

/// The group is the one in which a service manager keeps itself.
[[nodiscard]] bool isManagerCgroup(std::string_view path);

/// The control groups of the unified hierarchy by id: a group's id is the inode of its folder.
class CgroupTree {
public:
    /// `mountPoint` is where the hierarchy is mounted; empty where it isn't.
    explicit CgroupTree(std::string mountPoint) : m_mountPoint(std::move(mountPoint)) {}

    /// The path of group `id` below the mount point, "/" for its root. When the id is new the tree is walked
    /// again, at most once between two calls of `beginScan`; nothing for a group that is gone.
    [[nodiscard]] std::optional<std::string> path(std::uint64_t id);

    /// The processes in the group now.
    [[nodiscard]] std::vector<Pid> processes(const std::string &path) const;

    void beginScan() { m_mayWalk = true; }

private:
    void walk();
    void walk(const std::string &path, int depth);

    std::string m_mountPoint;
    std::unordered_map<std::uint64_t, std::string> m_paths;
    bool m_mayWalk = true;
};

/// The mount point of the unified hierarchy in `/proc/self/mounts` (proc(5), fstab(5)); empty when it isn't
/// mounted.
[[nodiscard]] std::string parseCgroupMount(std::string_view mounts);

} // namespace tarnvale
