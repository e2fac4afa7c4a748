#include "platform/linux/SpawnedProcess.h"

#include <csignal>

namespace tarnvale {

std::expected<std::unique_ptr<SpawnedProcess>, int>
SpawnedProcess::start(const SpawnOrder &order, std::function<void(int)> onEnd, ChildWatch::Means means) {
    const auto pid = spawn(order);
    if (!pid)
        return std::unexpected(pid.error());
    return std::unique_ptr<SpawnedProcess>(new SpawnedProcess(*pid, std::move(onEnd), means));
}

SpawnedProcess::SpawnedProcess(pid_t pid, std::function<void(int)> onEnd, ChildWatch::Means means)
    : m_pid(pid), m_onEnd(std::move(onEnd)), m_watch(pid, means) {
    if (m_watch.descriptor() >= 0)
        m_notifier = whenReadable(m_watch.descriptor(), [this] { end(); });
}

void SpawnedProcess::end() {
    m_notifier.reset();
    const int status = m_watch.reap();
    const auto call = std::move(m_onEnd);
    call(status); // may delete this
}

void SpawnedProcess::terminate() {
    // Only this object reaps it, so its number can't have passed to another process while it runs.
    if (isRunning())
        kill(m_pid, SIGTERM);
}

} // namespace tarnvale
