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
    QTimer::singleShot(duration, Qt::PreciseTimer, [promise] { promise->finish(); });
    return promise->future();
}

} // namespace tarnvale
