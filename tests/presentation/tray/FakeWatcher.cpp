#include "presentation/tray/FakeWatcher.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString object = QStringLiteral("/StatusNotifierWatcher");

} // namespace

FakeWatcher::FakeWatcher(const QDBusConnection &bus, bool hasHost) : m_bus(bus), m_hasHost(hasHost) {
    m_bus.registerVirtualObject(object, this);
    m_bus.registerService(service);
}

FakeWatcher::~FakeWatcher() {
    m_bus.unregisterService(service);
    m_bus.unregisterObject(object);
}

void FakeWatcher::setHasHost(bool hasHost) {
    m_hasHost = hasHost;
    m_bus.send(QDBusMessage::createSignal(object, service,
                                          hasHost ? QStringLiteral("StatusNotifierHostRegistered")
                                                  : QStringLiteral("StatusNotifierHostUnregistered")));
}

bool FakeWatcher::handleMessage(const QDBusMessage &message, const QDBusConnection &connection) {
    if (message.member() == QStringLiteral("RegisterStatusNotifierItem")) {
        registered.append(message.arguments().value(0).toString());
        return connection.send(refuses ? message.createErrorReply(QDBusError::AccessDenied, {})
                                       : message.createReply());
    }
    const bool asksForHosts =
        message.member() == QStringLiteral("Get") &&
        message.arguments().value(1) == QStringLiteral("IsStatusNotifierHostRegistered");
    if (!asksForHosts || !saysHosts)
        return false;
    return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(m_hasHost))));
}

} // namespace tarnvale
