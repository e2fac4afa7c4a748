#include "commands/automation/IdleWatch.h"

#include "commands/automation/ShortcutQueue.h"
#include "platform/Clock.h"

#include <QCoroFuture>

namespace tarnvale {

namespace {

constexpr int quarters = 4;

} // namespace

IdleWatch::IdleWatch(ShortcutQueue &queue, Clock &clock, std::chrono::milliseconds patience,
                     std::function<void()> onIdle)
    : m_queue(queue), m_clock(clock), m_onIdle(std::move(onIdle)) {
    watch(this, patience / quarters);
}

QCoro::Task<> IdleWatch::watch(QPointer<IdleWatch> self, std::chrono::milliseconds quarter) {
    for (int quiet = 0; quiet < quarters;) {
        const QFuture<void> slept = self->m_clock.sleep(quarter);
        co_await slept;
        if (!self)
            co_return;
        quiet = self->m_queue.takeUse() ? 0 : quiet + 1;
    }
    self->m_onIdle();
}

} // namespace tarnvale
