#pragma once

#include "presentation/settings/DesktopFacts.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <cstdint>

class QDBusPendingCallWatcher;

namespace tarnvale {

class GlobalHotKey;

/// Finds out what the desktop offers, and follows it. Nothing here waits for another program. Main thread.
class DesktopFactsReader : public QObject {
    Q_OBJECT

public:
    /// Asks at once. Both outlive this object.
    DesktopFactsReader(const QDBusConnection &bus, const TrayIcon &tray, const GlobalHotKey &hotKey);

    [[nodiscard]] const DesktopFacts &facts() const { return m_facts; }

    /// Looks again at what tells of no change by itself.
    void read();

Q_SIGNALS:
    void changed();

private:
    void set(const DesktopFacts &facts);
    void setNotifications(DesktopFacts::Notifications state, const QString &server);
    void askForNotifications();
    void takeAnswer(const QDBusPendingCallWatcher &call, std::uint64_t question);

    QDBusConnection m_bus;
    const TrayIcon &m_tray;
    const GlobalHotKey &m_hotKey;
    QDBusServiceWatcher m_watcher;
    DesktopFacts m_facts;
    std::uint64_t m_question = 0; ///< only the last one's answer counts
};

} // namespace tarnvale
