#include "discovery/linux/ForeignOwners.h"

#include "discovery/linux/commandLine.h"

#include <algorithm>

namespace tarnvale {

namespace {

bool publishes(TrackedProcess &process, const Listener &listener) {
    if (process.stat().comm != "docker-proxy")
        return false;
    const auto proxied = parseDockerProxy(process.words());
    if (!proxied || proxied->port != listener.port)
        return false;
    const bool isLoopback = proxied->hostAddress.starts_with("127.") || proxied->hostAddress == "::1";
    return isLoopback == listener.isLoopback;
}

} // namespace

std::optional<Pid> ForeignOwners::ownerOf(const Listener &listener, const std::vector<Pid> &refused) {
    const auto group = listener.cgroup ? m_cgroups.path(*listener.cgroup) : std::nullopt;
    const auto possible = candidates(group, refused);
    // There is a proxy for each address family; either stands for the container.
    for (TrackedProcess *process : possible)
        if (publishes(*process, listener))
            return process->pid();

    if (!group || !unitOfCgroup(*group).ends_with(".service"))
        return std::nullopt;
    std::optional<Pid> owner;
    for (TrackedProcess *process : possible) {
        TrackedProcess *parent = m_processes.find(process->stat().ppid);
        if (parent == nullptr || !m_processes.isServiceManager(*parent))
            continue;
        if (owner)
            return std::nullopt;
        owner = process->pid();
    }
    return owner;
}

/// The members of the group, or everybody when the group can't be told, as far as they come into question.
std::vector<TrackedProcess *> ForeignOwners::candidates(const std::optional<std::string> &group,
                                                        const std::vector<Pid> &refused) {
    std::vector<TrackedProcess *> possible;
    for (const Pid pid : group &&*group != "/" ? m_cgroups.processes(*group) : refused)
        if (std::binary_search(refused.begin(), refused.end(), pid))
            if (TrackedProcess *process = m_processes.find(pid))
                possible.push_back(process);
    return possible;
}

} // namespace tarnvale
