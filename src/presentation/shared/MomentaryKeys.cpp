#include "presentation/shared/MomentaryKeys.h"

#include "platform/Clock.h"
#include "presentation/shared/after.h"

namespace tarnvale {

void MomentaryKeys::hold(const QString &key) {
    const bool isNew = !contains(key);
    if (m_capacity == Capacity::one)
        m_held.clear();
    const int hold = ++m_holds;
    m_held[key] = hold;
    after(m_clock, m_duration, this, [this, key, hold] { release(key, hold); });
    if (isNew)
        Q_EMIT changed();
}

void MomentaryKeys::release(const QString &key, int hold) {
    const auto held = m_held.find(key);
    if (held == m_held.end() || held->second != hold)
        return;
    m_held.erase(held);
    Q_EMIT changed();
}

bool MomentaryKeys::confirm(const QString &key) {
    const auto held = m_held.find(key);
    if (held == m_held.end()) {
        hold(key);
        return false;
    }
    release(key, held->second);
    return true;
}

void MomentaryKeys::clear() {
    if (m_held.empty())
        return;
    m_held.clear();
    Q_EMIT changed();
}

} // namespace tarnvale
