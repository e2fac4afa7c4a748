#pragma once

#include "platform/Platform.h"
#include "presentation/pages/SessionRows.h"
#include "presentation/shared/MomentaryKeys.h"
#include "presentation/shared/ViewUpdates.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarnvale {

class PortStore;

/// The page of what ran and when. Main thread.
class ActivityController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(QAbstractItemModel *groups READ groups CONSTANT)
    Q_PROPERTY(int eventCount READ eventCount NOTIFY countsChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY countsChanged)
    Q_PROPERTY(int grouping READ grouping WRITE setGrouping NOTIFY groupingChanged)
    Q_PROPERTY(bool confirmClear READ confirmClear NOTIFY confirmClearChanged)

public:
    enum class Grouping { process, port };

    /// Both outlive this object.
    ActivityController(PortStore &store, const Platform &platform);

    [[nodiscard]] QAbstractItemModel *groups() { return &m_groups; }
    [[nodiscard]] int eventCount() const { return m_eventCount; }
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] int grouping() const { return static_cast<int>(m_grouping); } ///< a `Grouping`
    [[nodiscard]] bool confirmClear() const;                                    ///< the next press clears

    void setShown(bool isShown);
    /// A value of `Grouping`; others are ignored.
    void setGrouping(int grouping);

    /// The first time arms it, the second time within 3 seconds clears the history.
    Q_INVOKABLE void clearInTwoSteps();

Q_SIGNALS:
    void countsChanged();
    void groupingChanged();
    void confirmClearChanged();

private:
    void update();

    PortStore &m_store;
    Clock &m_clock;
    KeyedListModel<SessionGroupRow> m_groups;
    Grouping m_grouping = Grouping::process;
    int m_eventCount = 0;
    int m_sessionCount = 0;
    MomentaryKeys m_clearing;
    ViewUpdates m_updates;
};

} // namespace tarnvale
