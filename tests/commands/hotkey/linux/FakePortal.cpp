#include "commands/hotkey/linux/FakePortal.h"

#include <QDBusError>
#include <QDBusObjectPath>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

QString own(const QString &sender) {
    return sender.mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
}

QVariantMap optionsOf(const QDBusMessage &message) {
    return qdbus_cast<QVariantMap>(message.arguments().last());
}

} // namespace

FakePortal::FakePortal(const QDBusConnection &bus) : m_bus(bus) {
    registerPortalShortcuts();
    m_bus.registerVirtualObject(object, this, QDBusConnection::SubPath);
    m_bus.registerService(service);
}

FakePortal::~FakePortal() {
    m_bus.unregisterObject(object);
    m_bus.unregisterService(service);
}

PortalShortcut FakePortal::shortcut(const QString &id, const QString &trigger) {
    return {id, {{QStringLiteral("trigger_description"), trigger}}};
}

bool FakePortal::handleMessage(const QDBusMessage &message, const QDBusConnection &) {
    calls << message.member();
    if (message.member() == QLatin1String("Close")) {
        session.clear();
        return m_bus.send(message.createReply());
    }
    if (isForbidden)
        return m_bus.send(message.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotAllowed"),
                                                   QStringLiteral("no")));
    if (!hasShortcuts || message.interface() != shortcutsInterface)
        return m_bus.send(
            message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("no such method")));
    handleRequest(message);
    return true;
}

void FakePortal::handleRequest(const QDBusMessage &message) {
    const QString token = optionsOf(message).value(QStringLiteral("handle_token")).toString();
    const QString path = QStringLiteral("%1/request/%2/%3").arg(object, own(message.service()), token);
    const bool isBinding = message.member() == QLatin1String("BindShortcuts");
    if (isBinding)
        asked = qdbus_cast<QList<PortalShortcut>>(message.arguments().value(1));
    if (message.member() == QLatin1String("CreateSession") && refusedSessions > 0) {
        --refusedSessions;
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        respond(path, 2, {});
        return;
    }
    if (isHasty)
        respond(path, 0, resultsOf(message));
    m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    if (isHasty)
        return;
    if (isBinding && isAsking)
        m_waiting = message;
    else
        respond(path, isBinding ? code : 0, resultsOf(message));
}

void FakePortal::decide() {
    const QString token = optionsOf(*m_waiting).value(QStringLiteral("handle_token")).toString();
    const QString path = QStringLiteral("%1/request/%2/%3").arg(object, own(m_waiting->service()), token);
    respond(path, code, resultsOf(*m_waiting));
}

QVariantMap FakePortal::resultsOf(const QDBusMessage &message) {
    if (message.member() == QLatin1String("CreateSession")) {
        const QString token = optionsOf(message).value(QStringLiteral("session_handle_token")).toString();
        session = QStringLiteral("%1/session/%2/%3").arg(object, own(message.service()), token);
        QVariantMap results{{QStringLiteral("session_handle"), speaksOdd ? QVariant(7) : QVariant(session)}};
        if (bindsWithSession) {
            asked = qdbus_cast<QList<PortalShortcut>>(optionsOf(message).value(QStringLiteral("shortcuts")));
            grant();
            results.insert(QStringLiteral("shortcuts"), QVariant::fromValue(known));
        }
        return results;
    }
    if (message.member() == QLatin1String("BindShortcuts") && code == 0 && !leavesOut && !bindsWithSession)
        grant();
    return {{QStringLiteral("shortcuts"), QVariant::fromValue(known)}};
}

void FakePortal::grant() {
    for (const PortalShortcut &shortcut : asked)
        known << FakePortal::shortcut(shortcut.id, QStringLiteral("Press ") + shortcut.id);
}

void FakePortal::respond(const QString &path, uint response, const QVariantMap &results) {
    QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << response << results;
    m_bus.send(signal);
}

void FakePortal::activate(const QString &of, const QString &id) {
    QDBusMessage signal = QDBusMessage::createSignal(object, shortcutsInterface, QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(of)) << id << qulonglong(1) << QVariantMap();
    m_bus.send(signal);
}

void FakePortal::change(const QList<PortalShortcut> &shortcuts) {
    QDBusMessage signal =
        QDBusMessage::createSignal(object, shortcutsInterface, QStringLiteral("ShortcutsChanged"));
    signal << QVariant::fromValue(QDBusObjectPath(session)) << QVariant::fromValue(shortcuts);
    m_bus.send(signal);
}

void FakePortal::closeSession() {
    QDBusMessage signal = QDBusMessage::createSignal(
        session, QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Closed"));
    signal << QVariantMap();
    m_bus.send(signal);
}

} // namespace tarnvale
