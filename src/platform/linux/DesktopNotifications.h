#pragma once

#include "platform/Notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

#include <deque>
#include <map>
#include <optional>

namespace tarnvale {

/// Notifications by the server of the session bus (freedesktop.org, Desktop Notifications 1.2). Every call is
/// asynchronous. A server that isn't there yet is started by the bus, if the bus knows how; one that is
/// replaced by another is asked anew what it can do.
class DesktopNotifications : public QObject, public Notifications {
    Q_OBJECT
public:
    explicit DesktopNotifications(const QDBusConnection &bus = QDBusConnection::sessionBus());

    void setCategories(const std::vector<NotificationCategory> &categories) override;

    /// Nothing: here the user forbids, in the desktop's settings, and isn't asked.
    void requestAuthorization() override {}

    void post(const Notification &notification) override;

    /// What the last chosen action allows a window to do, once: to come to the front although another has the
    /// focus (`XDG_ACTIVATION_TOKEN`, xdg-activation). Empty when the server gave none. Set before `onAction`
    /// is called.
    [[nodiscard]] std::string takeActivationToken();

    /// How many notifications are remembered, so that their actions can be carried out.
    [[nodiscard]] std::size_t remembered() const { return m_shown.size(); }

    /// More than this are not remembered; the oldest go.
    static constexpr std::size_t mostRemembered = 100;
    /// More than this don't wait for a server to answer; the oldest are dropped.
    static constexpr std::size_t mostWaiting = 20;

private Q_SLOTS:
    void onOwnerChanged(const QString &service, const QString &before, const QString &after);
    void onActionInvoked(uint id, const QString &action, const QDBusMessage &message);
    void onClosed(uint id, uint reason, const QDBusMessage &message);
    void onActivationToken(uint id, const QString &token, const QDBusMessage &message);

private:
    struct Shown {
        std::uint64_t order = 0;
        NotificationPayload payload;
    };

    void askForCapabilities();
    void takeCapabilities(const QDBusMessage &reply, std::uint64_t question);
    void send(const Notification &notification);
    void remember(uint id, const NotificationPayload &payload);
    [[nodiscard]] const std::vector<NotificationAction> &buttonsOf(const Notification &notification) const;
    [[nodiscard]] bool isShown(uint id, const QDBusMessage &message) const;

    QDBusConnection m_bus;
    std::map<std::string, std::vector<NotificationAction>> m_categories;
    QString m_server; ///< unique bus name, empty while none is known
    std::optional<QStringList> m_capabilities;
    std::uint64_t m_question = 0; ///< the last that was put about them
    bool m_isAsking = false;      ///< its answer is due
    std::deque<Notification> m_waiting;
    std::map<uint, Shown> m_shown; ///< by the server's id
    std::uint64_t m_order = 0;
    std::string m_token;
};

} // namespace tarnvale
