#include "presentation/pages/Confirmations.h"

#include "platform/Clock.h"
#include "presentation/shared/after.h"

namespace tarnvale {

using namespace std::chrono_literals;

bool Confirmations::confirm(const QString &key) {
    constexpr auto armedFor = 3s;
    if (m_armed.erase(key) > 0) {
        Q_EMIT changed();
        return true;
    }
    const int press = ++m_presses;
    m_armed[key] = press;
    after(m_clock, armedFor, this, [this, key, press] {
        const auto armed = m_armed.find(key);
        if (armed == m_armed.end() || armed->second != press)
            return;
        m_armed.erase(armed);
        Q_EMIT changed();
    });
    Q_EMIT changed();
    return false;
}

void Confirmations::forget() {
    if (m_armed.empty())
        return;
    m_armed.clear();
    Q_EMIT changed();
}

} // namespace tarnvale
