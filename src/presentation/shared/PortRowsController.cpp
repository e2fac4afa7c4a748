#include "presentation/shared/PortRowsController.h"

#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/background.h"
#include "presentation/shared/after.h"
#include "presentation/shared/portMenu.h"
#include "store/PortStore.h"

#include <algorithm>
#include <memory>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

constexpr auto longestFileRead = 200ms;

} // namespace

ApplicationName namesOf(const Platform &platform) {
    return [&desktop = platform.desktop](const std::string &hostApp) {
        return desktop.applicationName(hostApp);
    };
}

PortFacts factsOf(const PortStore &store, const ListeningPort &port) {
    PortFacts facts{.isWatched = store.watchedPorts().contains(port.port)};
    if (const auto health = store.health().find(port.id()); health != store.health().end())
        facts.health = health->second;
    if (const auto tunnel = store.tunnels().find(port.port); tunnel != store.tunnels().end())
        facts.publicUrl = tunnel->second.url;
    return facts;
}

WebTest webTestOf(const PortStore &store) {
    return [&store](const ListeningPort &port) { return store.isWebPort(port); };
}

PortRowsController::PortRowsController(PortStore &store, const Platform &platform)
    : m_store(store),
      m_platform(platform),
      m_kills(platform.clock, armedFor),
      m_copies(platform.clock, copiedFor) {
    connect(&m_kills, &MomentaryKeys::changed, this, &PortRowsController::armedKillChanged);
    connect(&m_copies, &MomentaryKeys::changed, this, &PortRowsController::copiedChanged);
}

void PortRowsController::showSections(std::vector<RowSection> sections) {
    const Instant now = m_platform.clock.now();
    const ApplicationName names = namesOf(m_platform);
    const int selected = selectedIndex();
    m_entries.clear();
    m_sections.clear();
    m_sectionCounts.clear();
    std::vector<Shared<PortRow>> rows;
    for (RowSection &section : sections) {
        m_sections.append(title(section.group));
        m_sectionCounts.append(static_cast<int>(section.rows.size()));
        for (RowEntry &entry : section.rows) {
            rows.push_back(m_built.row(entry, section.group, factsOf(m_store, entry.port), now, names));
            m_entries.push_back(std::move(entry));
        }
    }
    m_built.age(now);
    m_rows.setRows(std::move(rows));
    Q_EMIT rowsChanged();
    if (selected != selectedIndex())
        Q_EMIT selectedIndexChanged();
}

void PortRowsController::setHovered(const QString &rowId) {
    if (std::exchange(m_hovered, rowId) != rowId)
        Q_EMIT hoveredChanged();
}

void PortRowsController::clearHovered(const QString &rowId) {
    if (m_hovered == rowId)
        setHovered({});
}

int PortRowsController::selectedIndex() const {
    const RowEntry *const selected = entry(m_selection);
    return selected == nullptr ? -1 : static_cast<int>(selected - m_entries.data());
}

const RowEntry *PortRowsController::entry(const QString &rowId) const {
    if (rowId.isEmpty())
        return nullptr;
    const std::string id = rowId.toStdString();
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const RowEntry &row) { return row.id() == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

void PortRowsController::setSelection(const QString &rowId) {
    if (std::exchange(m_selection, rowId) == rowId)
        return;
    Q_EMIT selectionChanged();
    Q_EMIT selectedIndexChanged();
}

void PortRowsController::select(const QString &rowId) {
    if (entry(rowId) != nullptr)
        setSelection(rowId);
}

void PortRowsController::moveSelection(int step) {
    disarmKill();
    if (m_entries.empty())
        return;
    const int last = rowCount() - 1;
    const int present = selectedIndex();
    const int next = present < 0 ? (step > 0 ? 0 : last) : std::clamp(present + step, 0, last);
    setSelection(QString::fromStdString(m_entries[static_cast<std::size_t>(next)].id()));
}

std::optional<bool> PortRowsController::handleRowKey(int key, Qt::KeyboardModifiers modifiers) {
    const auto held = modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if ((key == Qt::Key_Down || key == Qt::Key_Up) && !held) {
        moveSelection(key == Qt::Key_Down ? 1 : -1);
        return rowCount() > 0;
    }
    if ((key == Qt::Key_Delete || key == Qt::Key_Backspace) && held == Qt::ControlModifier &&
        entry(selection()) != nullptr) {
        stopInTwoSteps(selection());
        return true;
    }
    return std::nullopt;
}

void PortRowsController::openInBrowser(const QString &rowId) {
    if (const RowEntry *row = entry(rowId))
        m_store.openInBrowser(row->port);
}

void PortRowsController::focusHostApp(const QString &rowId) {
    if (const RowEntry *row = entry(rowId))
        m_store.focusHostApp(row->port);
}

void PortRowsController::copyAddress(const QString &rowId) {
    const RowEntry *const row = entry(rowId);
    if (row == nullptr)
        return;
    m_store.copyURL(row->port);
    m_copies.hold(rowId);
}

void PortRowsController::stopInTwoSteps(const QString &rowId) {
    const RowEntry *const row = entry(rowId);
    if (row != nullptr && m_kills.confirm(rowId))
        m_store.stop(row->port);
}

/// A folder on a dead network must not keep the menu away: then it comes without what lies on the disk.
void PortRowsController::requestMenu(const QString &rowId, const QPointF &place) {
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

} // namespace tarnvale
