#include "presentation/panel/PortListController.h"

#include "discovery/isDevPort.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/background.h"
#include "presentation/matchesQuery.h"
#include "presentation/panel/after.h"
#include "presentation/panel/portMenu.h"
#include "store/PortStore.h"

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto armedFor = 4s;
constexpr auto copiedFor = 1200ms;
constexpr auto longestFileRead = 200ms;
constexpr std::size_t fewEvents = 6;
constexpr std::size_t manyEvents = 30;

ApplicationName namesOf(const Platform &platform) {
    return [&desktop = platform.desktop](const std::string &hostApp) {
        return desktop.applicationName(hostApp);
    };
}

/// "Stop Visible" ends plain processes of developers, and never this one.
bool isStoppable(const ListeningPort &port) {
    return !port.container && !port.service && isDevPort(port) && !port.isDockerProxy() &&
           port.pid != getpid();
}

} // namespace

PortListController::PortListController(PortStore &store, const Platform &platform)
    : m_store(store), m_platform(platform) {
    for (const auto signal :
         {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::watchedPortsChanged,
          &PortStore::tunnelsChanged, &PortStore::showAllChanged, &PortStore::eventsChanged,
          &PortStore::stacksChanged})
        connect(&store, signal, this, &PortListController::scheduleUpdate);
    connect(&store, &PortStore::showAllChanged, this, &PortListController::showAllChanged);
    connect(&store, &PortStore::errorChanged, this, &PortListController::errorChanged);
    connect(&store, &PortStore::isMenuOpenChanged, this, &PortListController::handleOpening);
    prepare();
}

bool PortListController::showAll() const {
    return m_store.showAll();
}

QString PortListController::error() const {
    return m_store.error().value_or(QString());
}

int PortListController::eventCount() const {
    return static_cast<int>(m_store.events().size());
}

bool PortListController::isOpen() const {
    return m_store.isMenuOpen();
}

QString PortListController::chipTitle(int filter) const {
    return title(static_cast<PortFilter>(filter));
}

// What follows from the store.

void PortListController::scheduleUpdate() {
    if (std::exchange(m_isUpdateDue, true) || !isOpen())
        return;
    const auto update = [this] {
        if (m_isUpdateDue)
            prepare();
    };
    QMetaObject::invokeMethod(this, update, Qt::QueuedConnection);
}

void PortListController::prepare() {
    m_isUpdateDue = false;
    updateRows();
    updateStacks();
    updateEvents();
}

std::vector<ListeningPort> PortListController::queriedPorts() const {
    std::vector<ListeningPort> ports = m_store.visiblePorts();
    if (!m_query.trimmed().isEmpty())
        std::erase_if(ports, [&, names = namesOf(m_platform)](const ListeningPort &port) {
            return !matchesQuery(port, m_query, names);
        });
    return ports;
}

PortFacts PortListController::factsOf(const ListeningPort &port) const {
    PortFacts facts{.isWatched = m_store.watchedPorts().contains(port.port)};
    if (const auto health = m_store.health().find(port.id()); health != m_store.health().end())
        facts.health = health->second;
    if (const auto tunnel = m_store.tunnels().find(port.port); tunnel != m_store.tunnels().end())
        facts.publicUrl = tunnel->second.url;
    return facts;
}

void PortListController::updateChips(const std::vector<ListeningPort> &queried) {
    const WebTest isWeb = [this](const ListeningPort &port) { return m_store.isWebPort(port); };
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
    const WebTest isWeb = [this](const ListeningPort &port) { return m_store.isWebPort(port); };
    std::vector<ListeningPort> ports = queriedPorts();
    updateChips(ports);
    std::erase_if(ports, [&](const ListeningPort &port) { return !matchesFilter(port, m_filter, isWeb); });
    m_filtered = std::move(ports);
    m_stoppable.clear();
    for (const ListeningPort &port : m_filtered)
        if (isStoppable(port))
            m_stoppable.insert(port.pid);

    const Instant now = m_platform.clock.now();
    const ApplicationName names = namesOf(m_platform);
    const int selected = selectedIndex();
    m_entries.clear();
    m_sections.clear();
    m_sectionCounts.clear();
    std::vector<PortRow> rows;
    for (RowSection &section : groupedRows(m_filtered, isWeb)) {
        m_sections.append(title(section.group));
        m_sectionCounts.append(static_cast<int>(section.rows.size()));
        for (RowEntry &entry : section.rows) {
            rows.push_back(portRow(entry, section.group, factsOf(entry.port), now, names));
            m_entries.push_back(std::move(entry));
        }
    }
    m_rows.setRows(std::move(rows));
    Q_EMIT rowsChanged();
    if (selected != selectedIndex())
        Q_EMIT selectedIndexChanged();
}

void PortListController::updateStacks() {
    const int before = stackCount();
    std::vector<StackRow> rows;
    for (const Stack &stack : m_store.stacks())
        rows.push_back(stackRow(stack));
    m_stacks.setRows(std::move(rows));
    if (before != stackCount())
        Q_EMIT stackCountChanged();
}

void PortListController::updateEvents() {
    const std::size_t limit = !m_showRecent ? 0 : m_showAllRecent ? manyEvents : fewEvents;
    m_events.setRows(eventRows(m_store.events(), limit, m_platform.clock.now()));
    Q_EMIT eventsChanged();
}

void PortListController::handleOpening() {
    if (isOpen()) {
        prepare();
        keepAges();
    } else {
        setArmedKill({});
        setArmedStopAll(false);
        clearHovered(m_hovered);
    }
    Q_EMIT isOpenChanged();
}

/// Ages grow without any scan that tells of a change.
void PortListController::keepAges() {
    if (std::exchange(m_keepsAges, true))
        return;
    after(m_platform.clock, 2s, this, [this] {
        m_keepsAges = false;
        if (!isOpen())
            return;
        prepare();
        keepAges();
    });
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

void PortListController::setHovered(const QString &rowId) {
    if (std::exchange(m_hovered, rowId) != rowId)
        Q_EMIT hoveredChanged();
}

void PortListController::clearHovered(const QString &rowId) {
    if (m_hovered == rowId)
        setHovered({});
}

int PortListController::selectedIndex() const {
    const auto isSelected = [this](const RowEntry &row) {
        return m_selection == QString::fromStdString(row.id());
    };
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), isSelected);
    return found == m_entries.end() ? -1 : static_cast<int>(found - m_entries.begin());
}

const RowEntry *PortListController::entry(const QString &rowId) const {
    const std::string id = rowId.toStdString();
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const RowEntry &row) { return row.id() == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

void PortListController::setSelection(const QString &rowId) {
    if (std::exchange(m_selection, rowId) == rowId)
        return;
    Q_EMIT selectionChanged();
    Q_EMIT selectedIndexChanged();
}

void PortListController::select(const QString &rowId) {
    if (entry(rowId) != nullptr)
        setSelection(rowId);
}

void PortListController::moveSelection(int step) {
    setArmedKill({});
    if (m_entries.empty())
        return;
    const int last = rowCount() - 1;
    const int present = selectedIndex();
    const int next = present < 0 ? (step > 0 ? 0 : last) : std::clamp(present + step, 0, last);
    setSelection(QString::fromStdString(m_entries[static_cast<std::size_t>(next)].id()));
}

/// Nothing where the letter is mere text.
std::function<void()> PortListController::actionOfLetter(int key, const RowEntry &row) {
    const QString id = QString::fromStdString(row.id());
    if (key == Qt::Key_O && m_store.isWebPort(row.port))
        return [this, id] { openInBrowser(id); };
    if (key == Qt::Key_T && row.port.hostApp)
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
    if (isReturn && m_store.isWebPort(row.port))
        return [this, id] { openInBrowser(id); };
    return m_query.isEmpty() && !held ? actionOfLetter(key, row) : std::function<void()>();
}

bool PortListController::handleKey(int key, int modifiers, bool isRepeat) {
    const auto all = Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers));
    const auto held = all & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (key == Qt::Key_Escape) {
        if (m_query.isEmpty())
            Q_EMIT closeRequested();
        else
            setQuery({});
        return true;
    }
    if ((key == Qt::Key_Down || key == Qt::Key_Up) && !held) {
        moveSelection(key == Qt::Key_Down ? 1 : -1);
        return !m_entries.empty();
    }
    const RowEntry *const row = entry(m_selection);
    if (row == nullptr)
        return false;
    if ((key == Qt::Key_Delete || key == Qt::Key_Backspace) && held == Qt::ControlModifier) {
        stopInTwoSteps(m_selection);
        return true;
    }
    const auto act = actionOfKey(key, all, *row);
    if (act && !isRepeat)
        act();
    return act != nullptr;
}

void PortListController::openInBrowser(const QString &rowId) {
    if (const RowEntry *row = entry(rowId))
        m_store.openInBrowser(row->port);
}

void PortListController::focusHostApp(const QString &rowId) {
    if (const RowEntry *row = entry(rowId))
        m_store.focusHostApp(row->port);
}

void PortListController::copyAddress(const QString &rowId) {
    const RowEntry *const row = entry(rowId);
    if (row == nullptr)
        return;
    m_store.copyURL(row->port);
    setCopied(rowId);
    after(m_platform.clock, copiedFor, this, [this, rowId] {
        if (m_copied == rowId)
            setCopied({});
    });
}

void PortListController::setCopied(const QString &rowId) {
    if (std::exchange(m_copied, rowId) != rowId)
        Q_EMIT copiedChanged();
}

void PortListController::setArmedKill(const QString &rowId) {
    if (std::exchange(m_armedKill, rowId) != rowId)
        Q_EMIT armedKillChanged();
}

void PortListController::setArmedStopAll(bool isArmed) {
    if (std::exchange(m_armedStopAll, isArmed) != isArmed)
        Q_EMIT armedStopAllChanged();
}

void PortListController::stopInTwoSteps(const QString &rowId) {
    const RowEntry *const row = entry(rowId);
    if (row == nullptr)
        return;
    if (m_armedKill == rowId) {
        setArmedKill({});
        m_store.stop(row->port);
        return;
    }
    setArmedKill(rowId);
    after(m_platform.clock, armedFor, this, [this, rowId] {
        if (m_armedKill == rowId)
            setArmedKill({});
    });
}

void PortListController::stopVisibleInTwoSteps() {
    if (m_armedStopAll) {
        setArmedStopAll(false);
        m_store.stopVisible(m_filtered);
        return;
    }
    if (m_stoppable.empty())
        return;
    setArmedStopAll(true);
    after(m_platform.clock, armedFor, this, [this] { setArmedStopAll(false); });
}

/// A folder on a dead network must not keep the menu away: then it comes without what lies on the disk.
void PortListController::requestMenu(const QString &rowId, const QPointF &place) {
    const RowEntry *const row = entry(rowId);
    if (row == nullptr)
        return;
    const auto isShown = std::make_shared<bool>(false);
    const auto show = [this, place, isShown, port = row->port, isWeb = row->isWeb](const PortFiles &files) {
        if (!std::exchange(*isShown, true))
            Q_EMIT menuReady(place, portMenu(m_store, m_platform.desktop, port, isWeb, files));
    };
    const auto read = [port = row->port, log = m_store.launchLog(row->port), &tools = m_platform.tools] {
        return readPortFiles(port, log, tools);
    };
    whenDone(inBackground(read), this, show);
    after(m_platform.clock, longestFileRead, this, [show] { show({}); });
}

void PortListController::showSystemProcesses() {
    m_store.setShowAll(true);
}

void PortListController::dismissError() {
    m_store.setError(std::nullopt);
}

void PortListController::startStack(const QString &stackId) {
    const QUuid id(stackId);
    for (const Stack &stack : m_store.stacks())
        if (stack.id == id) {
            m_store.startStack(stack);
            return;
        }
}

void PortListController::deleteStack(const QString &stackId) {
    m_store.deleteStack(QUuid(stackId));
}

void PortListController::clearHistory() {
    m_store.clearHistory();
}

} // namespace tarnvale
