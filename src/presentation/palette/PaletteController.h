#pragma once

#include "platform/Platform.h"
#include "presentation/palette/PaletteModel.h"
#include "presentation/palette/paletteItems.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <vector>

namespace tarnvale {

class PortStore;

/// What the palette needs of the window around it. None is left out.
struct PaletteInputs {
    std::function<std::vector<RowEntry>()> rows; ///< those that are offered
    std::function<void(SidebarItem)> navigate;
    std::function<void(const ListeningPort &)> showPort;
    std::function<void()> close;
};

/// The command palette: what was typed, what that finds, which row is highlighted, and which destructive one
/// waits for its second press. While it isn't shown it follows nothing and has nothing to run. Main thread.
class PaletteController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(int highlighted READ highlighted NOTIFY highlightedChanged)
    Q_PROPERTY(QString armed READ armed NOTIFY armedChanged)
    Q_PROPERTY(QString spoken READ spoken NOTIFY spokenChanged)

public:
    /// `store` and what `platform` refers to outlive this object.
    PaletteController(PortStore &store, const Platform &platform, PaletteInputs inputs);

    /// Shown, it starts anew with the present ports; hidden, it lets go of them.
    void setShown(bool isShown);

    [[nodiscard]] QAbstractItemModel *rows() { return &m_model; }
    [[nodiscard]] int rowCount() const { return m_model.rowCount(); }
    [[nodiscard]] const QString &query() const { return m_query; }
    [[nodiscard]] int highlighted() const { return m_highlighted; } ///< may lie behind the last row
    [[nodiscard]] const QString &armed() const { return m_armed; }  ///< an item's id; empty: none
    /// What a screen reader says of the highlighted row; empty without one.
    [[nodiscard]] QString spoken() const;

    void setQuery(const QString &query);

    /// Highlights the row `step` further down, without leaving the list; false in an empty one.
    bool move(int step);

    /// Closes the palette and does what the highlighted row says. The first time, a destructive one is armed
    /// instead.
    Q_INVOKABLE void activate();

    /// The same for the row of that id.
    Q_INVOKABLE void click(const QString &itemId);

    Q_INVOKABLE void close();

    /// What a key of the search field does beyond typing; whether it is more than text. `key` and `modifiers`
    /// are Qt's. A key that is held is one press, except for the arrows.
    Q_INVOKABLE bool handleKey(int key, int modifiers, bool isRepeat = false);

Q_SIGNALS:
    void rowsChanged();
    void queryChanged();
    void highlightedChanged();
    void armedChanged();
    void spokenChanged();

private:
    void scheduleRebuild();
    void rebuild();
    void filter();
    void setHighlighted(int row);
    void setArmed(const QString &itemId);
    [[nodiscard]] const PaletteItem *item(int row) const;

    PortStore &m_store;
    Platform m_platform;
    PaletteInputs m_inputs;
    std::shared_ptr<const PaletteActions> m_actions;
    PaletteContents m_contents;
    std::vector<PaletteItem> m_items;
    std::vector<std::size_t> m_found; ///< of them, in the order of the rows
    PaletteModel m_model;
    QString m_query;
    QString m_armed;
    int m_highlighted = 0;
    bool m_isShown = false;
    bool m_isRebuildDue = false;
};

} // namespace tarnvale
