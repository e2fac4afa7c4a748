#pragma once

#include "discovery/linux/ProcessCache.h"
#include "discovery/linux/SocketDiag.h"
#include "discovery/linux/cgroups.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// Tells the owner of a socket whose holder this user may not see, where it can be told for certain:
///
/// - a `docker-proxy` says in its readable command line which port it publishes;
/// - a socket made in a service's control group belongs to the service's own process, the one that the
///   service manager started.
///
/// Where more than one process answers, or none, nothing is told.
class ForeignOwners {
public:
    ForeignOwners(ProcessCache &processes, CgroupTree &cgroups)
        : m_processes(processes), m_cgroups(cgroups) {}

    /// Begins a scan. `refused`, sorted, are the processes whose descriptors can't be seen: only they come
    /// into question.
    void beginScan(std::vector<Pid> refused);

    /// The owner of `listener`. An answer is kept while that process lives, and judged again after a few
    /// scans; that there is none is judged again after ever more scans, since it takes a look at many
    /// processes.
    [[nodiscard]] std::optional<Pid> ownerOf(const Listener &listener);

private:
    struct Answer {
        std::optional<Pid> owner;
        std::uint64_t startTime = 0; ///< the owner's
        std::uint64_t due = 0;       ///< the scan that judges again
        std::uint64_t wait = 1;      ///< scans to wait when there is no owner again
        std::uint64_t asked = 0;     ///< the last scan in which it was wanted
    };

    [[nodiscard]] bool holds(const Answer &answer);
    std::optional<Pid> judge(const Listener &listener);
    std::optional<Pid> proxyOf(const Listener &listener, const std::vector<Pid> &members);
    std::optional<Pid> mainProcess(const std::vector<Pid> &members);
    const std::vector<Pid> &proxiesAmongRefused();

    ProcessCache &m_processes;
    CgroupTree &m_cgroups;
    std::uint64_t m_scan = 0;
    std::vector<Pid> m_refused;
    std::optional<std::vector<Pid>> m_refusedProxies;    ///< found when first needed in a scan
    std::unordered_map<std::uint64_t, Answer> m_answers; ///< by inode
};

} // namespace tarnvale
