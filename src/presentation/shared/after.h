#pragma once

#include "platform/Clock.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QPointer>

#include <chrono>

namespace tarnvale {

/// Does `act` on the main thread after `duration`, unless `owner` is gone by then.
template<typename Act>
QCoro::Task<> after(Clock &clock, std::chrono::milliseconds duration, QPointer<QObject> owner, Act act) {
    const QFuture<void> slept = clock.sleep(duration);
    co_await slept;
    if (owner)
        act();
}

/// Hands the outcome of `work` to `use`, unless `owner` is gone by then.
template<typename Result, typename Use>
QCoro::Task<> whenDone(QFuture<Result> work, QPointer<QObject> owner, Use use) {
    const Result result = co_await work;
    if (owner)
        use(result);
}

} // namespace tarnvale
