#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QString>

namespace tarnvale {

// What a call that can't be carried out is answered with.

inline void sendError(const QDBusConnection &bus, const QDBusMessage &call, QDBusError::ErrorType type,
                      const QString &text) {
    bus.send(call.createErrorReply(type, text));
}

[[nodiscard]] inline QString outsidePortRange(qlonglong number) {
    return QStringLiteral("A port is a number from 1 to 65535, not %1.").arg(number);
}

[[nodiscard]] inline QString tooManyWaiting() {
    return QStringLiteral("Too many calls wait for an answer. Try again in a moment.");
}

} // namespace tarnvale
