#include "presentation/shared/ViewUpdates.h"

#include "platform/Clock.h"
#include "presentation/shared/after.h"
#include "store/PortStore.h"

#include <utility>

namespace tarnvale {

using namespace std::chrono_literals;

ViewUpdates::ViewUpdates(Clock &clock, std::function<void()> update)
    : m_clock(clock), m_update(std::move(update)) {}

void ViewUpdates::follow(PortStore &store, std::initializer_list<void (PortStore::*)()> changes) {
    for (const auto change : changes)
        connect(&store, change, this, [this] { schedule(); });
}

void ViewUpdates::setShown(bool isShown) {
    if (std::exchange(m_isShown, isShown) == isShown || !isShown)
        return;
    update();
    keepAges();
}

void ViewUpdates::schedule() {
    if (!m_isShown || std::exchange(m_isDue, true))
        return;
    const auto updateIfDue = [this] {
        if (m_isDue && m_isShown)
            update();
    };
    QMetaObject::invokeMethod(this, updateIfDue, Qt::QueuedConnection);
}

void ViewUpdates::update() {
    m_isDue = false;
    m_update();
}

void ViewUpdates::keepAges() {
    if (std::exchange(m_keepsAges, true))
        return;
    after(m_clock, 2s, this, [this] {
        m_keepsAges = false;
        if (!m_isShown)
            return;
        update();
        keepAges();
    });
}

} // namespace tarnvale
