#pragma once

#include "discovery/Instant.h"

#include <QFuture>
#include <QObject>

#include <chrono>

namespace tarnvale {

/// The time, and waiting. Main thread.
class Clock {
public:
    Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock() = default;

    [[nodiscard]] virtual Instant now() const = 0;

    /// Finishes on the main thread after `duration`, measured by a clock that nobody sets. It finishes early
    /// only when the clock itself goes away.
    [[nodiscard]] virtual QFuture<void> sleep(std::chrono::milliseconds duration) = 0;
};

/// The machine's own clocks.
class SystemClock : public Clock {
public:
    [[nodiscard]] Instant now() const override;
    [[nodiscard]] QFuture<void> sleep(std::chrono::milliseconds duration) override;

private:
    QObject m_timers; ///< the parent of those that run
};

} // namespace tarnvale
