#include "platform/linux/DesktopNotifications.h"

#include "platform/linux/notificationTexts.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <algorithm>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString object = QStringLiteral("/org/freedesktop/Notifications");
const QString applicationId = QStringLiteral("dev.tarnvale.Tarnvale");

QDBusMessage callOf(const QString &method) {
    return QDBusMessage::createMethodCall(service, object, service, method);
}

QVariantMap hints() {
    constexpr uchar normalUrgency = 1;
    return {{QStringLiteral("desktop-entry"), applicationId},
            {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
            {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)}};
}

} // namespace

DesktopNotifications::DesktopNotifications(const QDBusConnection &bus) : m_bus(bus) {
    auto *watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &DesktopNotifications::onOwnerChanged);
    // No sender is named here: Qt would ask the bus for its owner and wait. The slots check it instead.
    const QString any;
    m_bus.connect(any, object, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(onActionInvoked(uint, QString, QDBusMessage)));
    m_bus.connect(any, object, service, QStringLiteral("NotificationClosed"), this,
                  SLOT(onClosed(uint, uint, QDBusMessage)));
    m_bus.connect(any, object, service, QStringLiteral("ActivationToken"), this,
                  SLOT(onActivationToken(uint, QString, QDBusMessage)));
}

void DesktopNotifications::setCategories(const std::vector<NotificationCategory> &categories) {
    for (const NotificationCategory &category : categories)
        m_categories[category.id] = category.actions;
}

void DesktopNotifications::post(const Notification &notification) {
    if (m_capabilities) {
        send(notification);
        return;
    }
    m_waiting.push_back(notification);
    if (m_waiting.size() > mostWaiting)
        m_waiting.pop_front();
    if (!m_isAsking)
        askForCapabilities();
}

std::string DesktopNotifications::takeActivationToken() {
    return std::exchange(m_token, {});
}

void DesktopNotifications::onOwnerChanged(const QString &, const QString &, const QString &after) {
    m_server = after;
    m_capabilities.reset();
    m_shown.clear(); // the next server counts its ids anew
    m_token.clear();
    if (!after.isEmpty() && !m_waiting.empty())
        askForCapabilities(); // the old one's answer may never come
}

void DesktopNotifications::onActionInvoked(uint id, const QString &action, const QDBusMessage &message) {
    if (!isShown(id, message))
        return;
    const NotificationPayload payload = m_shown[id].payload;
    if (onAction)
        onAction(action.toStdString(), payload);
}

/// One that has only expired can still be chosen from the server's history.
void DesktopNotifications::onClosed(uint id, uint reason, const QDBusMessage &message) {
    constexpr uint expired = 1;
    if (reason != expired && isShown(id, message))
        m_shown.erase(id);
}

void DesktopNotifications::onActivationToken(uint id, const QString &token, const QDBusMessage &message) {
    if (isShown(id, message))
        m_token = token.toStdString();
}

void DesktopNotifications::askForCapabilities() {
    m_isAsking = true;
    const auto pending = m_bus.asyncCall(callOf(QStringLiteral("GetCapabilities")));
    auto *watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, question = ++m_question] {
        watcher->deleteLater();
        takeCapabilities(watcher->reply(), question);
    });
}

void DesktopNotifications::takeCapabilities(const QDBusMessage &reply, std::uint64_t question) {
    const bool isLast = question == m_question;
    m_isAsking = m_isAsking && !isLast;
    const QDBusPendingReply<QStringList> list(reply);
    if (list.isValid() && (m_server.isEmpty() || reply.service() == m_server)) {
        m_server = reply.service();
        m_capabilities = list.value();
        for (const Notification &notification : std::exchange(m_waiting, {}))
            send(notification);
    } else if (isLast) {
        m_waiting.clear();
    }
}

void DesktopNotifications::send(const Notification &notification) {
    constexpr uint replacesNone = 0;
    constexpr int serverDecidesHowLong = -1;
    QDBusMessage call = callOf(QStringLiteral("Notify"));
    call << QStringLiteral("Tarnvale") << replacesNone << applicationId << notificationTitle(notification)
         << notificationBody(notification, *m_capabilities)
         << notificationActions(buttonsOf(notification), *m_capabilities) << hints() << serverDecidesHowLong;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    const NotificationPayload payload = notification.payload.value_or(NotificationPayload());
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, payload] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> id(watcher->reply());
        if (id.isValid() && watcher->reply().service() == m_server)
            remember(id.value(), payload);
    });
}

void DesktopNotifications::remember(uint id, const NotificationPayload &payload) {
    m_shown[id] = {++m_order, payload};
    if (m_shown.size() <= mostRemembered)
        return;
    m_shown.erase(std::min_element(m_shown.begin(), m_shown.end(), [](const auto &a, const auto &b) {
        return a.second.order < b.second.order;
    }));
}

const std::vector<NotificationAction> &
DesktopNotifications::buttonsOf(const Notification &notification) const {
    static const std::vector<NotificationAction> none;
    const auto found = m_categories.find(notification.category.value_or(std::string()));
    return found == m_categories.end() ? none : found->second;
}

/// The server signals to everyone and anyone may send such a signal: what counts is its sender, and that the
/// notification is ours.
bool DesktopNotifications::isShown(uint id, const QDBusMessage &message) const {
    return !m_server.isEmpty() && message.service() == m_server && m_shown.contains(id);
}

} // namespace tarnvale
