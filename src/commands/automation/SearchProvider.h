#pragma once

#include "commands/automation/searchResults.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace tarnvale {

class ShortcutQueue;
struct ShortcutTarget;

/// What a search hands on to the application.
struct SearchActions {
    std::function<void(const QString &dialog)> tell; ///< what came of freeing a port
    std::function<void()> show;                      ///< the user wants to see more than results
};

/// The search of GNOME Shell: `org.gnome.Shell.SearchProvider2`, answered from the store's last scan, or its
/// first. A result opens its port; only one that says "Free port" frees.
class SearchProvider : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")
public:
    /// Adds the interface to `object`; `target` and `queue` outlive it.
    SearchProvider(QObject *object, const QDBusConnection &bus, const ShortcutTarget &target,
                   ShortcutQueue &queue, SearchActions actions);

public Q_SLOTS:
    QStringList GetInitialResultSet(const QStringList &terms, const QDBusMessage &call);
    QStringList GetSubsearchResultSet(const QStringList &previous, const QStringList &terms,
                                      const QDBusMessage &call);
    /// What to show of the results that are still there.
    QList<QVariantMap> GetResultMetas(const QStringList &ids);
    void ActivateResult(const QString &id, const QStringList &terms, uint timestamp,
                        const QDBusMessage &call);
    void LaunchSearch(const QStringList &terms, uint timestamp);

private:
    QDBusConnection m_bus;
    const ShortcutTarget &m_target;
    ShortcutQueue &m_queue;
    SearchActions m_actions;
};

} // namespace tarnvale
