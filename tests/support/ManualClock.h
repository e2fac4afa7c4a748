#pragma once

#include "platform/Clock.h"

#include <QPromise>

#include <chrono>
#include <functional>
#include <map>

namespace tarnvale {

/// Lets everything happen that is waiting to: events, and what they lead to.
void settle();

/// A clock that only the test moves.
class ManualClock : public Clock {
public:
    /// Lets happen what follows from a step of the clock.
    std::function<void()> afterStep = settle;

    [[nodiscard]] Instant now() const override { return m_now; }
    [[nodiscard]] QFuture<void> sleep(std::chrono::milliseconds duration) override;

    /// Lets time pass: who sleeps wakes in the order of the times, each at its time, and what follows from
    /// it happens before the clock moves on.
    void advance(std::chrono::milliseconds duration);

    /// Ends all sleep at once, and that of those who go back to sleep, and lets happen what follows.
    void wakeAll();

    /// How many sleep now.
    [[nodiscard]] std::size_t sleepers() const { return m_sleepers.size(); }

private:
    Instant m_now{std::chrono::sys_days{std::chrono::year{2025} / 3 / 1} + std::chrono::hours(12)};
    std::multimap<Instant, QPromise<void>> m_sleepers;
};

/// Runs the event loop until `condition` holds, for at most `timeout`; whether it came to hold.
bool waitFor(const std::function<bool()> &condition,
             std::chrono::milliseconds timeout = std::chrono::seconds(30));

} // namespace tarnvale
