#include "platform/Clock.h"

#include <QPromise>
#include <QTimer>

#include <memory>

namespace tarnvale {

Instant SystemClock::now() const {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

QFuture<void> SystemClock::sleep(std::chrono::milliseconds duration) {
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    auto *timer = new QTimer(&m_timers);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [promise, timer] {
        promise->finish();
        timer->deleteLater();
    });
    timer->start(duration);
    return promise->future();
}

} // namespace tarnvale
