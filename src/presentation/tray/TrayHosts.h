#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace tarnvale {

/// Makes our status item known to the desktop (`org.kde.StatusNotifierWatcher`): at once, when the desktop's
/// part of it comes later, starts anew, or gets a new host. Never waits for an answer. Main thread.
class TrayHosts : public QObject {
    Q_OBJECT
public:
    /// The item is the one that `bus` exports at /StatusNotifierItem.
    explicit TrayHosts(const QDBusConnection &bus, QObject *parent = nullptr);

    /// The item is registered and something shows it.
    [[nodiscard]] bool hasHost() const { return m_hasHost; }

Q_SIGNALS:
    void hasHostChanged();

private Q_SLOTS:
    void onOwnerChanged(const QString &service, const QString &before, const QString &after);
    void onHostsChanged(const QDBusMessage &message);

private:
    void findWatcher();
    void setWatcher(const QString &watcher);
    void registerItem();
    void askForHosts();
    void setHasHost(bool hasHost);

    QDBusConnection m_bus;
    QString m_watcher; ///< unique bus name, empty while there is none
    bool m_hasHost = false;
};

} // namespace tarnvale
