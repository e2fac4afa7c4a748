#pragma once

#include "presentation/pages/StackStarter.h"
#include "presentation/shared/PortRowsController.h"
#include "presentation/shared/SectionRows.h"
#include "presentation/shared/SidebarItem.h"
#include "presentation/shared/ViewUpdates.h"

#include <functional>
#include <vector>

namespace tarnvale {

/// What the overview needs of the window that it stands in.
struct OverviewLinks {
    std::function<std::vector<RowSection>()> groups; ///< the rows of all pages
    std::function<void(const ListeningPort &)> onSelect;
    std::function<void(SidebarItem)> showSection;
};

/// The window's first page: a greeting, counters, the running servers, the latest activity, some stacks. Main
/// thread.
class OverviewController : public PortRowsController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QString greeting READ greeting NOTIFY figuresChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY figuresChanged)
    Q_PROPERTY(int webCount READ webCount NOTIFY figuresChanged)
    Q_PROPERTY(QString webDetail READ webDetail NOTIFY figuresChanged)
    Q_PROPERTY(int serviceCount READ serviceCount NOTIFY figuresChanged)
    Q_PROPERTY(int exposedCount READ exposedCount NOTIFY figuresChanged)
    Q_PROPERTY(QAbstractItemModel *events READ events CONSTANT)
    Q_PROPERTY(int eventCount READ eventCount NOTIFY figuresChanged)
    Q_PROPERTY(QAbstractItemModel *stacks READ stacks CONSTANT)
    Q_PROPERTY(int stackCount READ stackCount NOTIFY figuresChanged)

public:
    /// All of them outlive this object.
    OverviewController(PortStore &store, const Platform &platform, OverviewLinks links);

    [[nodiscard]] const QString &greeting() const { return m_figures.greeting; }
    [[nodiscard]] const QString &summary() const { return m_figures.summary; }
    [[nodiscard]] int webCount() const { return m_figures.web; }
    [[nodiscard]] const QString &webDetail() const { return m_figures.webDetail; } ///< may be empty
    [[nodiscard]] int serviceCount() const { return m_figures.services; }
    [[nodiscard]] int exposedCount() const { return m_figures.exposed; }
    /// The newest six.
    [[nodiscard]] QAbstractItemModel *events() { return &m_events; }
    [[nodiscard]] int eventCount() const { return m_figures.events; }
    /// The first four.
    [[nodiscard]] QAbstractItemModel *stacks() { return &m_stacks; }
    [[nodiscard]] int stackCount() const { return m_figures.stacks; }

    void setShown(bool isShown) { m_updates.setShown(isShown); }
    /// The groups have changed for a reason that the store doesn't know of.
    void scheduleUpdate() { m_updates.schedule(); }

    Q_INVOKABLE void showPort(const QString &rowId);
    /// `item` is a `SidebarItem`'s key; others are ignored.
    Q_INVOKABLE void showPage(const QString &item);
    Q_INVOKABLE void startStack(const QString &stackId);

Q_SIGNALS:
    void figuresChanged();

private:
    /// What stands above and beside the lists.
    struct Figures {
        QString greeting;
        QString summary;
        QString webDetail;
        int web = 0;
        int services = 0;
        int exposed = 0;
        int events = 0; ///< how many are shown
        int stacks = 0; ///< how many are shown

        bool operator==(const Figures &) const = default;
    };

    void update();
    [[nodiscard]] Figures figures(const std::vector<RowSection> &groups) const;

    OverviewLinks m_links;
    KeyedListModel<EventRow> m_events;
    KeyedListModel<StackRow> m_stacks;
    Figures m_figures;
    StackStarter m_starter;
    ViewUpdates m_updates;
};

/// What one says at that hour of the day, from 0 to 23.
[[nodiscard]] QString greetingAt(int hour);

} // namespace tarnvale
