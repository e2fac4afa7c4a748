#include "platform/linux/FakeNotificationServer.h"

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString object = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

FakeNotificationServer::FakeNotificationServer(const QDBusConnection &bus) : m_bus(bus) {
    m_bus.registerVirtualObject(object, this);
    m_bus.registerService(service);
}

FakeNotificationServer::~FakeNotificationServer() {
    m_bus.unregisterObject(object);
    m_bus.unregisterService(service);
}

bool FakeNotificationServer::handleMessage(const QDBusMessage &message, const QDBusConnection &connection) {
    if (message.member() == QLatin1String("GetCapabilities"))
        ++capabilityCalls;
    else
        notified << message.arguments();
    if (isSilent)
        return true;
    if (speaksOdd)
        return connection.send(message.createReply(QVariant(QStringLiteral("odd"))));
    if (message.member() == QLatin1String("GetCapabilities"))
        return connection.send(message.createReply(QVariant(capabilities)));
    if (refuses)
        return connection.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
    return connection.send(message.createReply(QVariant::fromValue(nextId++)));
}

void FakeNotificationServer::emitSignal(const char *name, const QVariantList &arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(object, service, QLatin1String(name));
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace tarnvale
