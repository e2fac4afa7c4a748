#include "presentation/panel/PortListController.h"

#include "discovery/isDevPort.h"
#include "platform/Clock.h"
#include "store/PortStore.h"

#include <algorithm>
#include <unistd.h>

namespace tarnvale {

namespace {

constexpr std::size_t fewEvents = 6;
constexpr std::size_t manyEvents = 30;

/// "Stop Visible" ends plain processes of developers, and never this one.
bool isStoppable(const ListeningPort &port) {
    return !port.container && !port.service && isDevPort(port) && !port.isDockerProxy() &&
           port.pid != getpid();
}

} // namespace

PortListController::PortListController(PortStore &store, const Platform &platform)
    : PortRowsController(store, platform),
      m_stopAll(platform.clock, armedFor),
      m_updates(platform.clock, [this] { update(); }) {
    m_updates.follow(store,
                     {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::watchedPortsChanged,
                      &PortStore::tunnelsChanged, &PortStore::showAllChanged, &PortStore::eventsChanged,
                      &PortStore::stacksChanged});
    connect(&store, &PortStore::showAllChanged, this, &PortListController::showAllChanged);
    connect(&store, &PortStore::errorChanged, this, &PortListController::errorChanged);
    connect(&m_stopAll, &MomentaryKeys::changed, this, &PortListController::armedStopAllChanged);
    connect(&store, &PortStore::isMenuOpenChanged, this, &PortListController::handleOpening);
    prepare();
}

bool PortListController::showAll() const {
    return store().showAll();
}

QString PortListController::error() const {
    return store().error().value_or(QString());
}

int PortListController::eventCount() const {
    return static_cast<int>(store().events().size());
}

bool PortListController::isOpen() const {
    return store().isMenuOpen();
}

QString PortListController::chipTitle(int filter) const {
    return title(static_cast<PortFilter>(filter));
}

// What follows from the store.

void PortListController::update() {
    updateRows();
    updateStacks();
    updateEvents();
}

void PortListController::updateChips(const std::vector<ListeningPort> &queried) {
    const WebTest isWeb = webTestOf(store());
    QList<int> chips;
    for (const PortFilter chip : portFilters)
        if (chip == PortFilter::all || std::any_of(queried.begin(), queried.end(), [&](const auto &port) {
                return matchesFilter(port, chip, isWeb);
            }))
            chips.append(static_cast<int>(chip));
    if (!chips.contains(filter())) {
        m_filter = PortFilter::all;
        Q_EMIT filterChanged();
    }
    if (std::exchange(m_chips, chips) != chips)
        Q_EMIT chipsChanged();
}

void PortListController::updateRows() {
    const WebTest isWeb = webTestOf(store());
    std::vector<ListeningPort> ports = store().visiblePorts();
    std::erase_if(ports, std::not_fn(queryTest(m_query, namesOf(platform()))));
    updateChips(ports);
    std::erase_if(ports, [&](const ListeningPort &port) { return !matchesFilter(port, m_filter, isWeb); });
    m_filtered = std::move(ports);
    m_stoppable.clear();
    for (const ListeningPort &port : m_filtered)
        if (isStoppable(port))
            m_stoppable.insert(port.pid);

    showSections(groupedRows(m_filtered, isWeb));
}

void PortListController::updateStacks() {
    const int before = stackCount();
    std::vector<StackRow> rows;
    for (const Stack &stack : store().stacks())
        rows.push_back(stackRow(stack));
    m_stacks.setRows(std::move(rows));
    if (before != stackCount())
        Q_EMIT stackCountChanged();
}

void PortListController::updateEvents() {
    const std::size_t limit = !m_showRecent ? 0 : m_showAllRecent ? manyEvents : fewEvents;
    m_events.setRows(eventRows(store().events(), limit, platform().clock.now()));
    Q_EMIT eventsChanged();
}

void PortListController::handleOpening() {
    m_updates.setShown(isOpen());
    if (!isOpen()) {
        disarmKill();
        m_stopAll.clear();
        clearHovered(hovered());
    }
    Q_EMIT isOpenChanged();
}

// The user's part.

void PortListController::setQuery(const QString &query) {
    if (m_query == query)
        return;
    m_query = query;
    Q_EMIT queryChanged();
    setSelection({});
    updateRows();
}

void PortListController::setFilter(int filter) {
    if (!m_chips.contains(filter))
        return;
    setSelection({});
    if (std::exchange(m_filter, static_cast<PortFilter>(filter)) == static_cast<PortFilter>(filter))
        return;
    Q_EMIT filterChanged();
    updateRows();
}

void PortListController::setShowRecent(bool isShown) {
    m_showRecent = isShown;
    updateEvents();
}

void PortListController::setShowAllRecent(bool isShown) {
    m_showAllRecent = isShown;
    updateEvents();
}

/// Nothing where the letter is mere text.
std::function<void()> PortListController::actionOfLetter(int key, const RowEntry &row) {
    const QString id = QString::fromStdString(row.id());
    if (key == Qt::Key_O && store().isWebPort(row.port))
        return [this, id] { openInBrowser(id); };
    if (key == Qt::Key_T && row.port->hostApp)
        return [this, id] { focusHostApp(id); };
    if (key == Qt::Key_K)
        return [this, id] { stopInTwoSteps(id); };
    return {};
}

std::function<void()> PortListController::actionOfKey(int key, Qt::KeyboardModifiers modifiers,
                                                      const RowEntry &row) {
    const QString id = QString::fromStdString(row.id());
    const auto held = modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool isMenuKey = key == Qt::Key_Menu || (key == Qt::Key_F10 && modifiers & Qt::ShiftModifier);
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isMenuKey || (isReturn && held == Qt::ControlModifier))
        return [this, id] { Q_EMIT menuKeyPressed(id); };
    if (isReturn && store().isWebPort(row.port))
        return [this, id] { openInBrowser(id); };
    return m_query.isEmpty() && !held ? actionOfLetter(key, row) : std::function<void()>();
}

bool PortListController::handleKey(int key, int modifiers, bool isRepeat) {
    const auto all = Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers));
    if (key == Qt::Key_Escape) {
        if (m_query.isEmpty())
            Q_EMIT closeRequested();
        else
            setQuery({});
        return true;
    }
    if (const auto isDone = handleRowKey(key, all))
        return *isDone;
    const RowEntry *const row = entry(selection());
    if (row == nullptr)
        return false;
    const auto act = actionOfKey(key, all, *row);
    if (act && !isRepeat)
        act();
    return act != nullptr;
}

void PortListController::stopVisibleInTwoSteps() {
    if ((armedStopAll() || !m_stoppable.empty()) && m_stopAll.confirm(QStringLiteral("visible")))
        store().stopVisible(m_filtered);
}

void PortListController::showSystemProcesses() {
    store().setShowAll(true);
}

void PortListController::dismissError() {
    store().setError(std::nullopt);
}

void PortListController::startStack(const QString &stackId) {
    const QUuid id(stackId);
    for (const Stack &stack : store().stacks())
        if (stack.id == id) {
            store().startStack(stack);
            return;
        }
}

void PortListController::deleteStack(const QString &stackId) {
    store().deleteStack(QUuid(stackId));
}

void PortListController::clearHistory() {
    store().clearHistory();
}

} // namespace tarnvale
