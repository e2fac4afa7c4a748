#include "discovery/linux/ForeignOwners.h"

#include "discovery/linux/commandLine.h"

#include <algorithm>

namespace tarnvale {

namespace {

bool isProxy(const TrackedProcess &process) {
    return process.stat().comm == "docker-proxy";
}

bool publishes(TrackedProcess &process, const Listener &listener) {
    const auto proxied = isProxy(process) ? parseDockerProxy(process.words()) : std::nullopt;
    if (!proxied || proxied->port != listener.port)
        return false;
    const bool isLoopback = proxied->hostAddress.starts_with("127.") || proxied->hostAddress == "::1";
    return isLoopback == listener.isLoopback;
}

} // namespace

void ForeignOwners::beginScan(std::vector<Pid> refused) {
    std::erase_if(m_answers, [&](const auto &answer) { return answer.second.asked != m_scan; });
    ++m_scan;
    m_refused = std::move(refused);
    m_refusedProxies.reset();
}

std::optional<Pid> ForeignOwners::ownerOf(const Listener &listener) {
    constexpr std::uint64_t longestWait = 64;
    constexpr std::uint64_t scansBetweenJudgements = 8;
    Answer &answer = m_answers[listener.inode];
    answer.asked = m_scan;
    if (m_scan < answer.due && holds(answer))
        return answer.owner;
    answer.owner = judge(listener);
    if (answer.owner) {
        answer.startTime = m_processes.find(*answer.owner)->stat().startTime;
        answer.due = m_scan + scansBetweenJudgements;
        answer.wait = 1;
    } else {
        answer.due = m_scan + answer.wait;
        answer.wait = std::min(2 * answer.wait, longestWait);
    }
    return answer.owner;
}

bool ForeignOwners::holds(const Answer &answer) {
    if (!answer.owner)
        return true;
    const TrackedProcess *process = m_processes.find(*answer.owner);
    return process != nullptr && process->stat().startTime == answer.startTime;
}

/// The members of the group come into question. In the root group, or where the group can't be told, that
/// would be everybody, of whom only the proxies can speak for themselves.
std::optional<Pid> ForeignOwners::judge(const Listener &listener) {
    const auto group = listener.cgroup ? m_cgroups.path(*listener.cgroup) : std::nullopt;
    if (!group || *group == "/")
        return proxyOf(listener, proxiesAmongRefused());
    std::vector<Pid> members = m_cgroups.processes(*group);
    std::erase_if(members,
                  [&](Pid pid) { return !std::binary_search(m_refused.begin(), m_refused.end(), pid); });
    if (const auto proxy = proxyOf(listener, members))
        return proxy;
    return unitOfCgroup(*group).ends_with(".service") ? mainProcess(members) : std::nullopt;
}

/// The proxy that publishes the port. There is one for each address family; either stands for the container.
std::optional<Pid> ForeignOwners::proxyOf(const Listener &listener, const std::vector<Pid> &members) {
    for (const Pid pid : members)
        if (TrackedProcess *process = m_processes.find(pid);
            process != nullptr && publishes(*process, listener))
            return pid;
    return std::nullopt;
}

/// The one member that a service manager started; nothing when there are several.
std::optional<Pid> ForeignOwners::mainProcess(const std::vector<Pid> &members) {
    std::optional<Pid> owner;
    for (const Pid pid : members) {
        const TrackedProcess *process = m_processes.find(pid);
        TrackedProcess *parent = process == nullptr ? nullptr : m_processes.find(process->stat().ppid);
        if (parent == nullptr || !m_processes.isServiceManager(*parent))
            continue;
        if (owner)
            return std::nullopt;
        owner = pid;
    }
    return owner;
}

const std::vector<Pid> &ForeignOwners::proxiesAmongRefused() {
    if (!m_refusedProxies) {
        m_refusedProxies.emplace();
        for (const Pid pid : m_refused)
            if (const TrackedProcess *process = m_processes.find(pid);
                process != nullptr && isProxy(*process))
                m_refusedProxies->push_back(pid);
    }
    return *m_refusedProxies;
}

} // namespace tarnvale
