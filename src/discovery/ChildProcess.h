#pragma once

#include "discovery/FileDescriptor.h"

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnvale {

/// A program started by us, reaped by us. One that still runs when this object goes is left running and
/// reaped by a detached thread.
class ChildProcess {
public:
    struct Setup {
        int output = -1;          ///< becomes standard output; -1 is the null device
        bool mergesError = false; ///< standard error joins `output`, else goes to the null device
        bool newSession = false;
    };

    /// Starts the file at `path` with `arguments` behind its own name, the inherited environment and no
    /// input.
    [[nodiscard]] static ChildProcess start(const std::string &path,
                                            const std::vector<std::string> &arguments, const Setup &setup);

    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(ChildProcess &&) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    ~ChildProcess();

    [[nodiscard]] bool isStarted() const { return m_pid > 0 || m_isReaped; }

    /// Waits for the end; whether it came before `deadline`. It is looked for once even past the deadline.
    bool waitUntil(std::chrono::steady_clock::time_point deadline);

    /// Sends SIGTERM, unless it has ended.
    void terminate();

private:
    ChildProcess() = default;
    bool reap(int flags);

    pid_t m_pid = -1; ///< -1 when it never started or was reaped
    bool m_isReaped = false;
    FileDescriptor m_handle; ///< readable at its end, where the system has such a thing
};

} // namespace tarnvale
