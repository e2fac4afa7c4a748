#pragma once

#include "discovery/ListeningPort.h"
#include "platform/Platform.h"
#include "presentation/MenuEntry.h"
#include "presentation/PortFilter.h"
#include "presentation/groupedRows.h"
#include "presentation/shared/PortRowsController.h"
#include "presentation/shared/SectionRows.h"
#include "presentation/shared/ViewUpdates.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <set>
#include <vector>

namespace tarnvale {

class PortStore;

/// What the panel's list shows and what state it is in: search, chips, selection, what is armed. Main thread.
///
/// The state lives as long as this object; none of it is stored. While the panel is closed nothing is worked
/// out; `prepare()` brings all of it up to date.
class PortListController : public PortRowsController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the panel")

    Q_PROPERTY(QAbstractItemModel *stacks READ stacks CONSTANT)
    Q_PROPERTY(QAbstractItemModel *events READ events CONSTANT)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QList<int> chips READ chips NOTIFY chipsChanged)
    Q_PROPERTY(int filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(int portCount READ portCount NOTIFY rowsChanged)
    Q_PROPERTY(int stoppableCount READ stoppableCount NOTIFY rowsChanged)
    Q_PROPERTY(bool armedStopAll READ armedStopAll NOTIFY armedStopAllChanged)
    Q_PROPERTY(bool showAll READ showAll NOTIFY showAllChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(int stackCount READ stackCount NOTIFY stackCountChanged)
    Q_PROPERTY(int eventCount READ eventCount NOTIFY eventsChanged)
    Q_PROPERTY(int shownEvents READ shownEvents NOTIFY eventsChanged)
    Q_PROPERTY(int shownDays READ shownDays NOTIFY eventsChanged)
    Q_PROPERTY(bool showRecent READ showRecent WRITE setShowRecent NOTIFY eventsChanged)
    Q_PROPERTY(bool showAllRecent READ showAllRecent WRITE setShowAllRecent NOTIFY eventsChanged)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)

public:
    /// Both outlive this object.
    PortListController(PortStore &store, const Platform &platform);

    [[nodiscard]] QAbstractItemModel *stacks() { return &m_stacks; }
    [[nodiscard]] QAbstractItemModel *events() { return &m_events; }
    [[nodiscard]] const QString &query() const { return m_query; }
    [[nodiscard]] const QList<int> &chips() const { return m_chips; } ///< the `PortFilter`s that are offered
    [[nodiscard]] int filter() const { return static_cast<int>(m_filter); }
    [[nodiscard]] int portCount() const { return static_cast<int>(m_filtered.size()); }
    /// How many processes "Stop Visible" would stop.
    [[nodiscard]] int stoppableCount() const { return static_cast<int>(m_stoppable.size()); }
    [[nodiscard]] bool armedStopAll() const { return !m_stopAll.key().isEmpty(); }
    [[nodiscard]] bool showAll() const;
    [[nodiscard]] QString error() const;
    [[nodiscard]] int stackCount() const { return m_stacks.rowCount(); }
    [[nodiscard]] int eventCount() const;
    [[nodiscard]] int shownEvents() const { return m_events.rowCount(); }
    [[nodiscard]] int shownDays() const { return dayCount(m_events.rows()); }
    [[nodiscard]] bool showRecent() const { return m_showRecent; }
    [[nodiscard]] bool showAllRecent() const { return m_showAllRecent; }
    [[nodiscard]] bool isOpen() const;

    void setQuery(const QString &query);
    /// A value of `PortFilter`; others are ignored.
    void setFilter(int filter);
    void setShowRecent(bool isShown);
    void setShowAllRecent(bool isShown);

    /// Brings everything up to date with the store.
    void prepare() { m_updates.update(); }

    [[nodiscard]] Q_INVOKABLE QString chipTitle(int filter) const;

    /// What a key of the search field does beyond typing; whether it is more than text. `key` and `modifiers`
    /// are Qt's. A key that is held is one press, except for the arrows and Ctrl+Delete.
    Q_INVOKABLE bool handleKey(int key, int modifiers, bool isRepeat = false);

    Q_INVOKABLE void stopVisibleInTwoSteps();
    Q_INVOKABLE void showSystemProcesses();
    Q_INVOKABLE void dismissError();
    Q_INVOKABLE void startStack(const QString &stackId);
    Q_INVOKABLE void deleteStack(const QString &stackId);
    Q_INVOKABLE void clearHistory();

Q_SIGNALS:
    void queryChanged();
    void chipsChanged();
    void filterChanged();
    void armedStopAllChanged();
    void showAllChanged();
    void errorChanged();
    void stackCountChanged();
    void eventsChanged();
    void isOpenChanged();
    /// Esc in an empty field.
    void closeRequested();

private:
    void update();
    void updateRows();
    void updateChips(const std::vector<ListeningPort> &queried);
    void updateEvents();
    void updateStacks();
    void handleOpening();
    [[nodiscard]] std::function<void()> actionOfLetter(int key, const RowEntry &row);
    [[nodiscard]] std::function<void()> actionOfKey(int key, Qt::KeyboardModifiers modifiers,
                                                    const RowEntry &row);

    KeyedListModel<StackRow> m_stacks;
    KeyedListModel<EventRow> m_events;
    std::vector<ListeningPort> m_filtered;
    std::set<Pid> m_stoppable;
    QList<int> m_chips{0};
    QString m_query;
    PortFilter m_filter = PortFilter::all;
    bool m_showRecent = false;
    bool m_showAllRecent = false;
    MomentaryKeys m_stopAll;
    ViewUpdates m_updates;
};

} // namespace tarnvale
