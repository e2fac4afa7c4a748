#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>

namespace tarnvale {

class Clock;
class ShortcutQueue;

/// Tells when a program that only serves others has had nothing to do for a while. Main thread.
class IdleWatch : public QObject {
    Q_OBJECT
public:
    /// Calls `onIdle` once, when nobody has asked `queue` for anything for `patience`, and nobody waits for
    /// an answer; a quarter of that later at most. `queue` and `clock` outlive this.
    IdleWatch(ShortcutQueue &queue, Clock &clock, std::chrono::milliseconds patience,
              std::function<void()> onIdle);

private:
    static QCoro::Task<> watch(QPointer<IdleWatch> self, std::chrono::milliseconds quarter);

    ShortcutQueue &m_queue;
    Clock &m_clock;
    std::function<void()> m_onIdle;
};

} // namespace tarnvale
