#include "presentation/tray/TrayHosts.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace tarnvale {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherObject = QStringLiteral("/StatusNotifierWatcher");

/// Calls `done` with the answer, unless `owner` is gone by then.
void ask(const QDBusConnection &bus, const QDBusMessage &call, QObject *owner,
         const std::function<void(const QDBusMessage &)> &done) {
    auto *pending = new QDBusPendingCallWatcher(bus.asyncCall(call), owner);
    QObject::connect(pending, &QDBusPendingCallWatcher::finished, owner, [pending, done] {
        pending->deleteLater();
        done(pending->reply());
    });
}

} // namespace

TrayHosts::TrayHosts(const QDBusConnection &bus, QObject *parent) : QObject(parent), m_bus(bus) {
    auto *owners =
        new QDBusServiceWatcher(watcherService, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this, &TrayHosts::onOwnerChanged);
    // No sender is named here: Qt would ask the bus for its owner and wait. The slot checks it instead.
    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        m_bus.connect(QString(), watcherObject, watcherService, QString::fromLatin1(signal), this,
                      SLOT(onHostsChanged(QDBusMessage)));
    findWatcher();
}

void TrayHosts::findWatcher() {
    const QString daemon = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(daemon, QStringLiteral("/org/freedesktop/DBus"),
                                                       daemon, QStringLiteral("GetNameOwner"));
    call << watcherService;
    ask(m_bus, call, this, [this](const QDBusMessage &reply) {
        const QDBusPendingReply<QString> owner(reply);
        if (owner.isValid() && m_watcher.isEmpty())
            setWatcher(owner.value());
    });
}

void TrayHosts::onOwnerChanged(const QString &, const QString &, const QString &after) {
    setWatcher(after);
}

void TrayHosts::setWatcher(const QString &watcher) {
    m_watcher = watcher;
    setHasHost(false);
    if (!m_watcher.isEmpty())
        registerItem();
}

/// Anyone may send such a signal; what counts is that it is the watcher's.
void TrayHosts::onHostsChanged(const QDBusMessage &message) {
    if (!m_watcher.isEmpty() && message.service() == m_watcher)
        registerItem();
}

/// A watcher that knows us already ignores a second call, and we hear of its hosts. We give our unique name:
/// hosts then look for the item at its usual place.
void TrayHosts::registerItem() {
    QDBusMessage call = QDBusMessage::createMethodCall(m_watcher, watcherObject, watcherService,
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_bus.baseService();
    ask(m_bus, call, this, [this, watcher = m_watcher](const QDBusMessage &reply) {
        if (watcher != m_watcher)
            return;
        if (reply.type() == QDBusMessage::ReplyMessage)
            askForHosts();
        else
            setHasHost(false);
    });
}

/// A watcher that doesn't say is taken to have a host.
void TrayHosts::askForHosts() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_watcher, watcherObject, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    ask(m_bus, call, this, [this, watcher = m_watcher](const QDBusMessage &reply) {
        if (watcher != m_watcher)
            return;
        const QDBusPendingReply<QDBusVariant> answer(reply);
        setHasHost(!answer.isValid() || answer.value().variant().toBool());
    });
}

void TrayHosts::setHasHost(bool hasHost) {
    if (std::exchange(m_hasHost, hasHost) != hasHost)
        Q_EMIT hasHostChanged();
}

} // namespace tarnvale
