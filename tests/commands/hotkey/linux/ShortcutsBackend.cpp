#include "commands/hotkey/linux/ShortcutsBackend.h"

#include <QDBusError>
#include <QDBusObjectPath>

namespace tarnvale {

namespace {

const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.impl.portal.GlobalShortcuts");
const QString sessionInterface = QStringLiteral("org.freedesktop.impl.portal.Session");

QString pathIn(const QVariantList &arguments, int index) {
    return arguments.value(index).value<QDBusObjectPath>().path();
}

} // namespace

ShortcutsBackend::ShortcutsBackend(const QDBusConnection &bus) : m_bus(bus) {
    registerPortalShortcuts();
    m_bus.registerVirtualObject(object, this, QDBusConnection::SubPath);
    m_bus.registerService(service);
}

ShortcutsBackend::~ShortcutsBackend() {
    m_bus.unregisterObject(object);
    m_bus.unregisterService(service);
}

bool ShortcutsBackend::handleMessage(const QDBusMessage &message, const QDBusConnection &) {
    if (message.interface() == sessionInterface && message.member() == QLatin1String("Close")) {
        calls << message.member();
        session.clear();
        return m_bus.send(message.createReply());
    }
    if (message.interface() != shortcutsInterface)
        return m_bus.send(message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("none")));
    calls << message.member();
    return m_bus.send(message.createReply(answerTo(message)));
}

QVariantList ShortcutsBackend::answerTo(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    if (message.member() == QLatin1String("CreateSession"))
        return createSession(arguments);
    if (message.member() == QLatin1String("BindShortcuts")) {
        if (code != 0)
            return {code, QVariantMap()};
        if (!bindsWithSession)
            bind(qdbus_cast<QList<PortalShortcut>>(arguments.value(2)));
    }
    return {0u, shortcuts()};
}

QVariantList ShortcutsBackend::createSession(const QVariantList &arguments) {
    session = pathIn(arguments, 1);
    if (!bindsWithSession)
        return {0u, QVariantMap()};
    const QVariantMap options = qdbus_cast<QVariantMap>(arguments.value(3));
    bind(qdbus_cast<QList<PortalShortcut>>(options.value(QStringLiteral("shortcuts"))));
    return {0u, shortcuts()};
}

QVariantMap ShortcutsBackend::shortcuts() const {
    return {{QStringLiteral("shortcuts"), QVariant::fromValue(known)}};
}

void ShortcutsBackend::bind(const QList<PortalShortcut> &shortcuts) {
    asked = shortcuts;
    for (const PortalShortcut &shortcut : asked)
        known << PortalShortcut{shortcut.id,
                                {{QStringLiteral("trigger_description"), QStringLiteral("Meta+Alt+P")}}};
}

void ShortcutsBackend::activate(const QString &id) {
    send(object, shortcutsInterface, QStringLiteral("Activated"),
         {QVariant::fromValue(QDBusObjectPath(session)), id, QVariant::fromValue(qulonglong(1)),
          QVariantMap()});
}

void ShortcutsBackend::change(const QString &id, const QString &trigger) {
    known = {PortalShortcut{id, {{QStringLiteral("trigger_description"), trigger}}}};
    send(object, shortcutsInterface, QStringLiteral("ShortcutsChanged"),
         {QVariant::fromValue(QDBusObjectPath(session)), QVariant::fromValue(known)});
}

void ShortcutsBackend::closeSession() {
    send(session, sessionInterface, QStringLiteral("Closed"), {});
}

void ShortcutsBackend::send(const QString &path, const QString &interface, const QString &name,
                            const QVariantList &arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace tarnvale
