#include "presentation/pages/ActivityController.h"

#include "platform/Clock.h"
#include "store/PortStore.h"

#include <QCoreApplication>

#include <utility>

namespace tarnvale {

namespace {

constexpr QLatin1String allEvents("events");

} // namespace

ActivityController::ActivityController(PortStore &store, const Platform &platform)
    : m_store(store),
      m_clock(platform.clock),
      m_clearing(platform.clock, confirmedWithin),
      m_updates(platform.clock, [this] { update(); }) {
    m_updates.follow(store, {&PortStore::eventsChanged});
    connect(&m_clearing, &MomentaryKeys::changed, this, &ActivityController::confirmClearChanged);
}

QString ActivityController::subtitle() const {
    return QCoreApplication::translate("ActivityView", "%1 runs from the last %2 starts and stops.")
        .arg(m_sessionCount)
        .arg(m_eventCount);
}

bool ActivityController::confirmClear() const {
    return m_clearing.contains(allEvents);
}

void ActivityController::setShown(bool isShown) {
    if (!isShown)
        m_clearing.clear();
    m_updates.setShown(isShown);
}

void ActivityController::setGrouping(int grouping) {
    if (grouping != static_cast<int>(Grouping::process) && grouping != static_cast<int>(Grouping::port))
        return;
    const auto next = static_cast<Grouping>(grouping);
    if (std::exchange(m_grouping, next) == next)
        return;
    Q_EMIT groupingChanged();
    if (m_updates.isShown())
        update();
}

void ActivityController::update() {
    const std::vector<PortSession> all = sessions(m_store.events());
    m_groups.setRows(sessionGroupRows(groupSessions(all, m_grouping == Grouping::port), m_clock.now()));
    const auto eventCount = static_cast<int>(m_store.events().size());
    const auto sessionCount = static_cast<int>(all.size());
    const bool isSame = eventCount == m_eventCount && sessionCount == m_sessionCount;
    m_eventCount = eventCount;
    m_sessionCount = sessionCount;
    if (!isSame)
        Q_EMIT countsChanged();
}

void ActivityController::clearInTwoSteps() {
    if (m_eventCount > 0 && m_clearing.confirm(allEvents))
        m_store.clearHistory();
}

} // namespace tarnvale
