#pragma once

#include "platform/Platform.h"
#include "presentation/MenuEntry.h"
#include "presentation/groupedRows.h"
#include "presentation/shared/KeyedListModel.h"
#include "presentation/shared/MomentaryKeys.h"
#include "presentation/shared/PortRow.h"
#include "presentation/shared/PortRowCache.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace tarnvale {

class PortStore;

/// The names of applications as the desktop of `platform` gives them, which outlives the function.
[[nodiscard]] ApplicationName namesOf(const Platform &platform);

/// What is known of `port` beyond its record.
[[nodiscard]] PortFacts factsOf(const PortStore &store, const ListeningPort &port);

/// The test of `store` for web servers, which outlives it.
[[nodiscard]] WebTest webTestOf(const PortStore &store);

/// A list of ports in sections, its state (selection, what is armed, what was copied), and what its rows can
/// do. Which ports these are is said by who builds on it. Main thread.
class PortRowsController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a screen")

    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(QStringList sections READ sections NOTIFY rowsChanged)
    Q_PROPERTY(QList<int> sectionCounts READ sectionCounts NOTIFY rowsChanged)
    Q_PROPERTY(QString selection READ selection NOTIFY selectionChanged)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged)
    Q_PROPERTY(QString hovered READ hovered NOTIFY hoveredChanged)
    Q_PROPERTY(QString armedKill READ armedKill NOTIFY armedKillChanged)
    Q_PROPERTY(QString copied READ copied NOTIFY copiedChanged)

public:
    [[nodiscard]] QAbstractItemModel *rows() { return &m_rows; }
    [[nodiscard]] int rowCount() const { return static_cast<int>(m_entries.size()); }
    [[nodiscard]] const QStringList &sections() const { return m_sections; }
    [[nodiscard]] const QList<int> &sectionCounts() const { return m_sectionCounts; } ///< rows in each
    [[nodiscard]] const QString &selection() const { return m_selection; } ///< a row's id; may be gone
    [[nodiscard]] int selectedIndex() const;                               ///< -1 without a selected row
    [[nodiscard]] const QString &hovered() const { return m_hovered; }
    [[nodiscard]] QString armedKill() const { return m_kills.key(); } ///< the row that a second press stops
    [[nodiscard]] QString copied() const { return m_copies.key(); }   ///< the row that has just been copied

    /// The row of that id, valid until the rows change; null when there is none.
    [[nodiscard]] const RowEntry *entry(const QString &rowId) const;
    /// The row at that place, from 0 to `rowCount()` - 1.
    [[nodiscard]] const RowEntry *entryAt(int row) const { return &m_entries[static_cast<std::size_t>(row)]; }

    Q_INVOKABLE void setHovered(const QString &rowId);
    /// The pointer has left the row.
    Q_INVOKABLE void clearHovered(const QString &rowId);
    /// Selects the row `step` rows further down, without leaving the list.
    Q_INVOKABLE void moveSelection(int step);
    Q_INVOKABLE void select(const QString &rowId);

    Q_INVOKABLE void openInBrowser(const QString &rowId);
    Q_INVOKABLE void copyAddress(const QString &rowId);
    Q_INVOKABLE void focusHostApp(const QString &rowId);
    /// The first time arms the row, the second time within 4 seconds stops its port.
    Q_INVOKABLE void stopInTwoSteps(const QString &rowId);
    /// Asks for the menu of the row's port at a place of the screen, see `menuReady`.
    Q_INVOKABLE void requestMenu(const QString &rowId, const QPointF &place);

Q_SIGNALS:
    void rowsChanged();
    void selectionChanged();
    void selectedIndexChanged();
    void hoveredChanged();
    void armedKillChanged();
    void copiedChanged();
    /// The menu of a row's port, some moments after it was asked for.
    void menuReady(const QPointF &place, const std::vector<tarnvale::MenuEntry> &entries);
    /// A key asks for the menu of the selected row.
    void menuKeyPressed(const QString &rowId);

protected:
    /// Both outlive this object.
    PortRowsController(PortStore &store, const Platform &platform);

    /// What both lists do at a key: the arrows walk, Ctrl+Delete stops in two steps. Nothing where the key
    /// is another one; else whether it did anything.
    [[nodiscard]] std::optional<bool> handleRowKey(int key, Qt::KeyboardModifiers modifiers);
    /// Shows these from now on.
    void showSections(std::vector<RowSection> sections);
    void disarmKill() { m_kills.clear(); }
    void setSelection(const QString &rowId);

    [[nodiscard]] PortStore &store() const { return m_store; }
    [[nodiscard]] const Platform &platform() const { return m_platform; }

private:
    PortStore &m_store;
    Platform m_platform;
    KeyedListModel<Shared<PortRow>> m_rows;
    PortRowCache m_built;
    std::vector<RowEntry> m_entries;
    QStringList m_sections;
    QList<int> m_sectionCounts;
    QString m_selection;
    QString m_hovered;
    MomentaryKeys m_kills;
    MomentaryKeys m_copies;
};

} // namespace tarnvale
