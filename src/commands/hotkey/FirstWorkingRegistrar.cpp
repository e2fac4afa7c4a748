#include "commands/hotkey/FirstWorkingRegistrar.h"

#include <QCoroFuture>

#include <cassert>

namespace tarnvale {

FirstWorkingRegistrar::FirstWorkingRegistrar(std::vector<std::unique_ptr<HotKeyRegistrar>> candidates)
    : m_candidates(std::move(candidates)) {
    assert(!m_candidates.empty());
    for (const auto &candidate : m_candidates) {
        candidate->onPress = [this] {
            if (onPress)
                onPress();
        };
        candidate->onAvailabilityChange = [this] {
            if (onAvailabilityChange)
                onAvailabilityChange();
        };
    }
}

FirstWorkingRegistrar::~FirstWorkingRegistrar() = default;

QFuture<HotKeyOutcome> FirstWorkingRegistrar::grab(const Shortcut &shortcut, HotKeyOccasion occasion) {
    release();
    QFuture<HotKeyOutcome> future = m_pending.begin();
    ask(this, shortcut, occasion);
    return future;
}

void FirstWorkingRegistrar::release() {
    ++m_round;
    for (const auto &candidate : m_candidates)
        candidate->release();
    m_pending.abandon();
}

HotKeyAvailability FirstWorkingRegistrar::availability() const {
    return m_candidates[m_asked]->availability();
}

QCoro::Task<> FirstWorkingRegistrar::ask(QPointer<FirstWorkingRegistrar> self, Shortcut shortcut,
                                         HotKeyOccasion occasion) {
    const std::uint64_t round = self->m_round;
    const std::size_t count = self->m_candidates.size();
    HotKeyOutcome outcome;
    for (std::size_t i = 0; i < count; ++i) {
        self->m_asked = i;
        const QFuture<HotKeyOutcome> answer = self->m_candidates[i]->grab(shortcut, occasion);
        outcome = co_await answer;
        if (!self || self->m_round != round)
            co_return;
        if (outcome || outcome.error() != HotKeyFailure::unavailable)
            break;
    }
    self->m_pending.give(outcome);
}

} // namespace tarnvale
