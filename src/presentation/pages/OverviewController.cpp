#include "presentation/pages/OverviewController.h"

#include "platform/Clock.h"
#include "presentation/shared/relativeTime.h"
#include "store/PortStore.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr std::size_t shownEvents = 6;
constexpr std::size_t shownStacks = 4;

QString overviewText(const char *text) {
    return QCoreApplication::translate("OverviewView", text);
}

QString summaryOf(std::size_t servers) {
    if (servers == 0)
        return overviewText("Nothing is listening right now.");
    if (servers == 1)
        return overviewText("1 server is listening on this Mac.");
    return overviewText("%1 servers are listening on this Mac.").arg(servers);
}

bool isResponding(const PortStore &store, const RowEntry &row) {
    const auto health = store.health().find(row.id());
    return health != store.health().end() && health->second.kind == Health::Kind::responding;
}

} // namespace

QString greetingAt(int hour) {
    constexpr int morning = 5;
    constexpr int noon = 12;
    constexpr int evening = 17;
    if (hour >= morning && hour < noon)
        return overviewText("Good morning");
    if (hour >= noon && hour < evening)
        return overviewText("Good afternoon");
    return overviewText("Good evening");
}

OverviewController::OverviewController(PortStore &store, const Platform &platform, OverviewLinks links)
    : PortRowsController(store, platform),
      m_links(std::move(links)),
      m_starter(store),
      m_updates(platform.clock, [this] { update(); }) {
    m_updates.follow(store,
                     {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::watchedPortsChanged,
                      &PortStore::tunnelsChanged, &PortStore::showAllChanged, &PortStore::eventsChanged,
                      &PortStore::stacksChanged});
}

OverviewController::Figures OverviewController::figures(const std::vector<RowSection> &groups) const {
    Figures figures{.greeting = greetingAt(localTime(platform().clock.now()).time().hour()),
                    .events = m_events.rowCount(),
                    .stacks = m_stacks.rowCount()};
    std::size_t servers = 0;
    std::ptrdiff_t responding = 0;
    for (const RowSection &group : groups) {
        servers += group.rows.size();
        if (group.group == PortGroup::services)
            figures.services = static_cast<int>(group.rows.size());
        if (group.group != PortGroup::web)
            continue;
        figures.web = static_cast<int>(group.rows.size());
        responding = std::count_if(group.rows.begin(), group.rows.end(),
                                   [this](const RowEntry &row) { return isResponding(store(), row); });
    }
    figures.summary = summaryOf(servers);
    if (responding > 0)
        figures.webDetail = overviewText("%1 responding").arg(responding);
    const std::vector<ListeningPort> ports = store().visiblePorts();
    figures.exposed = static_cast<int>(
        std::count_if(ports.begin(), ports.end(), [](const ListeningPort &port) { return port.isExposed; }));
    return figures;
}

void OverviewController::update() {
    std::vector<RowSection> groups = m_links.groups();
    m_events.setRows(eventRows(store().events(), shownEvents, platform().clock.now()));
    std::vector<StackRow> stacks;
    for (const Stack &stack : store().stacks())
        if (stacks.size() < shownStacks)
            stacks.push_back(stackRow(stack));
    m_stacks.setRows(std::move(stacks));
    Figures next = figures(groups);
    showSections(std::move(groups));
    if (std::exchange(m_figures, next) != next)
        Q_EMIT figuresChanged();
}

void OverviewController::showPort(const QString &rowId) {
    if (const RowEntry *row = entry(rowId))
        m_links.onSelect(row->port);
}

void OverviewController::showPage(const QString &item) {
    if (const auto page = sidebarItem(item))
        m_links.showSection(*page);
}

void OverviewController::startStack(const QString &stackId) {
    m_starter.start(stackId);
}

} // namespace tarnvale
