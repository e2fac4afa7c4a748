#include "app/QuitSignals.h"

#include <atomic>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnvale {

namespace {

std::atomic<int> writeEnd{-1};

/// No more than may be done in a signal handler (signal-safety(7)).
void noteSignal(int) {
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(writeEnd.load(), &byte, sizeof byte);
    errno = saved;
}

} // namespace

QuitSignals::QuitSignals(std::function<void()> quit) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, m_ends.data()) != 0)
        return; // then a signal ends the program as it always would
    writeEnd = m_ends[0];
    m_notifier = std::make_unique<QSocketNotifier>(m_ends[1], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [end = m_ends[1], quit = std::move(quit)] {
                         char bytes[16];
                         while (read(end, bytes, sizeof bytes) > 0) {
                         }
                         quit();
                     });
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t each = 0; each < signals.size(); ++each)
        sigaction(signals[each], &action, &m_before[each]);
}

QuitSignals::~QuitSignals() {
    if (!m_notifier)
        return;
    for (std::size_t each = 0; each < signals.size(); ++each)
        sigaction(signals[each], &m_before[each], nullptr);
    m_notifier.reset();
    for (const int end : m_ends)
        close(end);
}

} // namespace tarnvale
