#include "platform/linux/FakeSettingsPortal.h"

#include <QDBusMetaType>
#include <QDBusVariant>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

} // namespace

FakeSettingsPortal::FakeSettingsPortal(const QDBusConnection &bus) : m_bus(bus) {
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    m_bus.registerVirtualObject(object, this);
    m_bus.registerService(service);
}

FakeSettingsPortal::~FakeSettingsPortal() {
    m_bus.unregisterService(service);
    m_bus.unregisterObject(object);
}

void FakeSettingsPortal::change(const QString &space, const QString &key, const QVariant &value) {
    QDBusMessage signal = QDBusMessage::createSignal(object, interface, QStringLiteral("SettingChanged"));
    signal << space << key << QVariant::fromValue(QDBusVariant(value));
    m_bus.send(signal);
}

bool FakeSettingsPortal::handleMessage(const QDBusMessage &message, const QDBusConnection &connection) {
    if (message.member() != QStringLiteral("ReadAll"))
        return false;
    ++calls;
    const QStringList spaces = message.arguments().constFirst().toStringList();
    QMap<QString, QVariantMap> answer;
    for (const QString &space : spaces) {
        if (settings.contains(space))
            answer[space] = settings[space];
    }
    return connection.send(
        message.createReply(speaksOdd ? QVariant(QStringLiteral("dark")) : QVariant::fromValue(answer)));
}

} // namespace tarnvale
