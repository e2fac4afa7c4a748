#pragma once

#include "discovery/linux/SocketDiag.h"
#include "discovery/linux/cgroups.h"
#include "discovery/linux/walkDescriptors.h"

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// Which processes hold which listening sockets.
///
/// A socket is held by a set of processes: forked workers inherit it. A holder counts only when its
/// descriptor was seen to mean that very socket during the last `update`, so a pid or a descriptor that has
/// passed to something else never lies.
///
/// The first update looks through the descriptors of every process. Later ones confirm what is known with one
/// look each and search for the rest where it is likely: in processes that are new, then in the control group
/// that made the socket, then everywhere. A socket that even then has no holder is searched for everywhere
/// again only after ever more updates. Old processes are looked through again in turn when the number of
/// their descriptors has changed, since one can be handed a socket late.
class SocketHolders {
public:
    /// `procFolder` stays open as long as this object lives.
    explicit SocketHolders(int procFolder) : m_procFolder(procFolder) {}

    /// Brings the holders of `listeners` up to date. `mayHaveRun`, when there is one, is asked once for each
    /// of the `owners()` that were known before and still may be.
    void update(const std::vector<Listener> &listeners, CgroupTree &cgroups,
                const MayHaveRun &mayHaveRun = {});

    /// The holders of a socket, by pid; empty when none can be seen.
    [[nodiscard]] std::span<const Holder> holders(std::uint64_t inode) const;

    /// All processes that hold a socket, by pid.
    [[nodiscard]] std::vector<Pid> owners() const;

    /// The processes whose descriptors this user may not see, by pid.
    [[nodiscard]] std::vector<Pid> refused() const;

    /// How many processes were looked through since the beginning: what a test of the cost counts.
    [[nodiscard]] std::uint64_t walkCount() const { return m_walkCount; }

private:
    struct Search {
        std::uint64_t due = 0;  ///< the update that may search everywhere again
        std::uint64_t wait = 1; ///< updates to wait after the next failure
    };

    void keepConfirmed(const MayHaveRun &mayHaveRun);
    bool mayHaveForked();
    std::vector<WalkedProcess> takeNewProcesses();
    void walk(std::vector<WalkedProcess> &processes);
    void searchGroups(const std::vector<Listener> &listeners, CgroupTree &cgroups);
    void searchEverywhere();
    void audit();
    [[nodiscard]] std::vector<std::uint64_t> unheld() const;
    [[nodiscard]] bool hasDueSearch(const std::vector<std::uint64_t> &missing) const;
    [[nodiscard]] bool isWalked(Pid pid) const;
    [[nodiscard]] WalkedProcess *known(Pid pid);

    int m_procFolder;
    std::uint64_t m_update = 0;
    std::vector<std::uint64_t> m_inodes;    ///< listed in this update, sorted
    std::vector<Holder> m_holders;          ///< sorted
    std::vector<WalkedProcess> m_processes; ///< by pid
    std::vector<Pid> m_walked;              ///< in this update
    std::unordered_map<std::uint64_t, Search> m_searches;
    std::optional<std::int64_t> m_lastPid;
    std::size_t m_auditPosition = 0;
    std::uint64_t m_walkCount = 0;
};

} // namespace tarnvale
