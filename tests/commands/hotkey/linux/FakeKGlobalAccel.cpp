#include "commands/hotkey/linux/FakeKGlobalAccel.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QVariantMap>

#include <algorithm>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.kde.kglobalaccel");
const QString object = QStringLiteral("/kglobalaccel");
const QString component = QStringLiteral("/component/dev_tarnvale_Tarnvale");

} // namespace

FakeKGlobalAccel::FakeKGlobalAccel(const QDBusConnection &bus) : m_bus(bus) {
    m_bus.registerVirtualObject(object, this);
    m_bus.registerService(service);
}

FakeKGlobalAccel::~FakeKGlobalAccel() {
    m_bus.unregisterObject(object);
    m_bus.unregisterService(service);
}

bool FakeKGlobalAccel::handleMessage(const QDBusMessage &message, const QDBusConnection &) {
    calls << message.member();
    if (isForbidden)
        return m_bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
    if (speaksOdd)
        return m_bus.send(message.createReply(QVariant(QStringLiteral("odd"))));
    return m_bus.send(replyTo(message));
}

QDBusMessage FakeKGlobalAccel::replyTo(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    if (message.member() == QLatin1String("doRegister"))
        actionId = arguments.value(0).toStringList();
    if (message.member() == QLatin1String("setInactive"))
        isActive = false;
    if (message.member() == QLatin1String("getComponent"))
        return message.createReply(QVariant::fromValue(QDBusObjectPath(component)));
    if (message.member() != QLatin1String("setShortcut"))
        return message.createReply();
    keys = qdbus_cast<QList<int>>(arguments.value(1));
    flags = arguments.value(2).toUInt();
    keys.removeIf([this](int key) { return others.contains(key); });
    isActive = true;
    return message.createReply(QVariant::fromValue(keys));
}

void FakeKGlobalAccel::pressOld(const QString &action) {
    send(QStringLiteral("globalShortcutPressed"),
         {QStringLiteral("dev.tarnvale.Tarnvale"), action, QVariant::fromValue(qlonglong(1))});
}

void FakeKGlobalAccel::pressNew(const QString &action) {
    send(QStringLiteral("pressed"), {action, QVariantMap()});
}

void FakeKGlobalAccel::send(const QString &name, const QVariantList &arguments) {
    QDBusMessage signal =
        QDBusMessage::createSignal(component, QStringLiteral("org.kde.kglobalaccel.Component"), name);
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace tarnvale
