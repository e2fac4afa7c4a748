#include "platform/process/ProcessHandle.h"

#include "discovery/processDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnvale {

namespace {

using Clock = std::chrono::steady_clock;

bool mayBeSignalled(Pid pid) {
    return pid >= 2 && pid != getpid();
}

} // namespace

ProcessHandle::ProcessHandle(Pid pid) : m_pid(pid) {
    if (!mayBeSignalled(pid)) {
        m_error = EPERM;
        return;
    }
    m_descriptor = openProcessDescriptor(pid);
    // Kernels before 5.3 (ENOSYS) and some sandboxes (EPERM) have no such descriptors; kill(2) has to do
    // there.
    if (!m_descriptor.isOpen() && errno != ENOSYS && errno != EPERM)
        m_error = errno;
}

int ProcessHandle::signal(int number) const {
    if (m_error != 0)
        return m_error;
    // pidfd_send_signal(2); glibc has had a wrapper only since 2.36.
    const long result = m_descriptor.isOpen()
                            ? syscall(SYS_pidfd_send_signal, m_descriptor.get(), number, nullptr, 0)
                            : kill(m_pid, number);
    return result == 0 ? 0 : errno;
}

bool ProcessHandle::waitForEnd(std::chrono::milliseconds timeout) const {
    constexpr std::int64_t longestNap = 60'000;
    constexpr std::int64_t napWithoutDescriptor = 20;
    constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24 * 365);
    const Clock::time_point deadline = Clock::now() + std::min(timeout, longestWait);
    for (;;) {
        const auto left = std::max<std::int64_t>(
            0, std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count());
        const std::int64_t nap = std::min(left, m_descriptor.isOpen() ? longestNap : napWithoutDescriptor);
        pollfd ended{.fd = m_descriptor.get(), .events = POLLIN, .revents = 0};
        if (poll(&ended, 1, static_cast<int>(nap)) > 0 || signal(0) == ESRCH)
            return true;
        if (left == 0)
            return false;
    }
}

} // namespace tarnvale
