#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

namespace tarnvale {

QFuture<void> ManualClock::sleep(std::chrono::milliseconds duration) {
    QPromise<void> promise;
    promise.start();
    const QFuture<void> future = promise.future();
    m_sleepers.emplace(m_now + duration, std::move(promise));
    return future;
}

void ManualClock::advance(std::chrono::milliseconds duration) {
    afterStep();
    const Instant goal = m_now + duration;
    while (!m_sleepers.empty() && m_sleepers.begin()->first <= goal) {
        auto next = m_sleepers.extract(m_sleepers.begin());
        m_now = std::max(m_now, next.key());
        next.mapped().finish();
        afterStep();
    }
    m_now = goal;
}

void ManualClock::wakeAll() {
    for (settle(); !m_sleepers.empty(); settle())
        m_sleepers.extract(m_sleepers.begin()).mapped().finish();
}

void settle() {
    // A step can post the next one; what takes more than this many waits for something else.
    constexpr int steps = 16;
    for (int i = 0; i < steps; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds timeout) {
    const QDeadlineTimer deadline(timeout);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        constexpr int longestWait = 10;
        QCoreApplication::processEvents(QEventLoop::AllEvents, longestWait);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace tarnvale
