#pragma once

#include "commands/automation/SearchProvider.h"

#include <QDBusArgument>

namespace tarnvale {

/// An action that KRunner shows beside a match.
struct RunnerAction {
    QString id;
    QString text;
    QString icon;

    bool operator==(const RunnerAction &) const = default;
};

/// A match as KRunner takes it.
struct RunnerMatch {
    QString id;
    QString text;
    QString icon;
    int type = 0; ///< how sure it is, by KRunner's numbers
    double relevance = 0;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action);
QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match);

/// The search of KRunner: `org.kde.krunner1`, answered from the store's last scan, or its first. A match
/// opens its port; its action "free" frees it.
class RunnerService : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")
public:
    /// Adds the interface to `object`; `queue` outlives it.
    RunnerService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue, SearchActions actions);

public Q_SLOTS:
    QList<tarnvale::RunnerAction> Actions();
    QList<tarnvale::RunnerMatch> Match(const QString &query, const QDBusMessage &call);
    void Run(const QString &id, const QString &action, const QDBusMessage &call);
    /// The shortest query that is worth asking with.
    QVariantMap Config();
    void Teardown() {}

private:
    QDBusConnection m_bus;
    ShortcutQueue &m_queue;
    SearchActions m_actions;
};

} // namespace tarnvale
