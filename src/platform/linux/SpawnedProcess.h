#pragma once

#include "discovery/ListeningPort.h"
#include "platform/descriptorNotifier.h"
#include "platform/linux/ChildWatch.h"
#include "platform/linux/spawn.h"

#include <expected>
#include <functional>
#include <memory>

namespace tarnvale {

/// A program that was started here and runs beside this one. It goes on when this object goes, and is reaped
/// when it ends. Main thread.
class SpawnedProcess {
public:
    /// Starts it. `onEnd` is called once with the wait status (wait(2)) from the event loop, as long as the
    /// object lives; it may delete the object. The error is an `errno`.
    [[nodiscard]] static std::expected<std::unique_ptr<SpawnedProcess>, int>
    start(const SpawnOrder &order, std::function<void(int status)> onEnd,
          ChildWatch::Means means = ChildWatch::Means::best);

    [[nodiscard]] Pid pid() const { return m_pid; }
    [[nodiscard]] bool isRunning() const { return !m_watch.hasEnded(); }

    /// Sends SIGTERM, unless it has ended.
    void terminate();

private:
    SpawnedProcess(pid_t pid, std::function<void(int)> onEnd, ChildWatch::Means means);
    void end();

    pid_t m_pid;
    std::function<void(int)> m_onEnd;
    ChildWatch m_watch;
    DescriptorNotifier m_notifier; ///< before its descriptor goes
};

} // namespace tarnvale
