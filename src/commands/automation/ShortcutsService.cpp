#include "commands/automation/ShortcutsService.h"

#include "commands/automation/ShortcutQueue.h"
#include "commands/automation/replies.h"

namespace tarnvale {

ShortcutsService::ShortcutsService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue)
    : QDBusAbstractAdaptor(object), m_bus(bus), m_queue(queue) {}

bool ShortcutsService::isPort(const QDBusMessage &call, int port) const {
    call.setDelayedReply(true);
    if (isPortNumber(port))
        return true;
    sendError(m_bus, call, QDBusError::InvalidArgs, outsidePortRange(port));
    return false;
}

void ShortcutsService::refuseFlood(const QDBusMessage &call) const {
    sendError(m_bus, call, QDBusError::LimitsExceeded, tooManyWaiting());
}

QStringList ShortcutsService::ListDevPorts(const QDBusMessage &call, QString &) {
    call.setDelayedReply(true);
    const auto answer = [bus = m_bus, call](const DevPorts &ports) {
        bus.send(call.createReply({ports.lines, ports.dialog}));
    };
    if (!m_queue.list(answer))
        refuseFlood(call);
    return {};
}

QString ShortcutsService::FreePort(int port, const QDBusMessage &call) {
    if (!isPort(call, port))
        return {};
    const auto answer = [bus = m_bus, call](const QString &dialog) { bus.send(call.createReply(dialog)); };
    if (!m_queue.free(port, std::nullopt, answer))
        refuseFlood(call);
    return {};
}

void ShortcutsService::OpenPort(int port, const QDBusMessage &call) {
    if (!isPort(call, port))
        return;
    m_queue.open(port);
    m_bus.send(call.createReply());
}

} // namespace tarnvale
