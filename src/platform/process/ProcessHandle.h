#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/ListeningPort.h"

#include <chrono>

namespace tarnvale {

/// One particular process, from when the handle was opened until it ends: a pid that is reused in between
/// means nothing to it. Open it first, then check what the process is, then signal.
///
/// Where the system can't give such a handle, the pid itself has to do.
class ProcessHandle {
public:
    /// A handle on the process that is `pid` now. It may be invalid; then `signal` tells why.
    explicit ProcessHandle(Pid pid);

    /// Sends `number`, or only asks whether that would be possible with 0. Returns 0 or the `errno` of the
    /// failure: ESRCH for a process that has ended, EPERM for one that this user may not signal, for any pid
    /// below 2 and for this program itself.
    [[nodiscard]] int signal(int number) const;

    /// Waits until the whole process, all its threads, has ended; whether it did before `timeout`, a year at
    /// most, was over.
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds timeout) const;

private:
    Pid m_pid;
    int m_error = 0; ///< why there is no process to act on
    FileDescriptor m_descriptor;
};

} // namespace tarnvale
