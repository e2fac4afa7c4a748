#include "platform/linux/ChildWatch.h"

#include "discovery/processDescriptor.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>

namespace tarnvale {

namespace {

/// The result of waitpid(2), uninterrupted.
pid_t waitFor(pid_t child, int &status, int flags) {
    pid_t result = 0;
    do
        result = waitpid(child, &status, flags);
    while (result < 0 && errno == EINTR);
    return result;
}

/// False when no more threads are allowed.
template<typename Work> bool startThread(Work work) {
    try {
        std::thread(std::move(work)).detach();
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

/// Waits for the child's end and tells it; where nobody listens any more, reaps the child.
void waitAndTell(pid_t child, int teller) {
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
    int status = 0;
    if (send(teller, "", 1, MSG_NOSIGNAL) < 0)
        waitFor(child, status, 0);
    close(teller);
}

} // namespace

ChildWatch::ChildWatch(pid_t child, Means means) : m_child(child) {
    if (means == Means::best)
        m_descriptor = openProcessDescriptor(child);
    if (!m_descriptor.isOpen())
        startWaiter();
}

void ChildWatch::startWaiter() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    m_descriptor = FileDescriptor(ends[0]);
    m_hasWaiter = startThread([child = m_child, teller = ends[1]] { waitAndTell(child, teller); });
    if (m_hasWaiter)
        return;
    m_descriptor.reset();
    close(ends[1]);
}

/// The order matters: a waiter that hears of the closed descriptor reaps, and one that told of the end before
/// has made it possible to reap here.
ChildWatch::~ChildWatch() {
    m_descriptor.reset();
    int status = 0;
    if (m_isReaped || waitFor(m_child, status, WNOHANG) != 0 || m_hasWaiter)
        return;
    // Without a thread the process stays a zombie until this program ends.
    startThread([child = m_child] {
        int ignored = 0;
        waitFor(child, ignored, 0);
    });
}

bool ChildWatch::hasEnded() const {
    siginfo_t info{};
    return m_isReaped || waitid(P_PID, static_cast<id_t>(m_child), &info, WEXITED | WNOHANG | WNOWAIT) < 0 ||
           info.si_pid == m_child;
}

int ChildWatch::reap() {
    int status = 0;
    const bool isOurs = !m_isReaped && waitFor(m_child, status, WNOHANG) == m_child;
    m_isReaped = true;
    return isOurs ? status : 0;
}

} // namespace tarnvale
