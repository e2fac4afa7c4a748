#pragma once

#include "discovery/linux/procFiles.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tarnvale {

/// A process and one of its descriptors that means a listening socket.
struct Holder {
    std::uint64_t inode = 0;
    Pid pid = 0;
    std::int32_t descriptor = 0;
    Pid thread = 0; ///< under which the descriptor is shown when the first thread has ended; else 0

    auto operator<=>(const Holder &) const = default;
};

/// A process and what the last look at its descriptors found.
struct WalkedProcess {
    ProcessEntry entry;
    std::int64_t descriptors = -1; ///< how many there were; -1 before the first look
    bool isRefused = false;        ///< this user may not see them
    bool isKernelThread = false;   ///< it never has any
};

/// Sorts `holders` and keeps one for each process and socket.
void sortUniqueHolders(std::vector<Holder> &holders);

/// Looks through the open descriptors of `processes` for the sockets `inodes` (sorted) and returns the
/// holders, one for each process and socket. More than a few processes are shared out among two threads. A
/// process that has gone meanwhile has no descriptors.
[[nodiscard]] std::vector<Holder> walkDescriptors(int procFolder, std::span<WalkedProcess> processes,
                                                  const std::vector<std::uint64_t> &inodes);

/// Whether a process may have run since it was asked for last; false when that is known not to be so. Called
/// on two threads.
using MayHaveRun = std::function<bool(Pid)>;

/// Those of `holders` whose descriptor means the same socket now. `mayHaveRun` is called once for every
/// process among them: the descriptors of one that hasn't run are as they were.
[[nodiscard]] std::vector<Holder> confirmedHolders(int procFolder, std::vector<Holder> holders,
                                                   const MayHaveRun &mayHaveRun);

} // namespace tarnvale
