#pragma once

#include "discovery/linux/ProcessCache.h"
#include "discovery/linux/SocketDiag.h"
#include "discovery/linux/cgroups.h"

#include <optional>
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

    /// `refused`, sorted, are the processes whose descriptors can't be seen: only they come into question.
    [[nodiscard]] std::optional<Pid> ownerOf(const Listener &listener, const std::vector<Pid> &refused);

private:
    std::vector<TrackedProcess *> candidates(const std::optional<std::string> &group,
                                             const std::vector<Pid> &refused);

    ProcessCache &m_processes;
    CgroupTree &m_cgroups;
};

} // namespace tarnvale
