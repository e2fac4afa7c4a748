#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFuture>

namespace tarnvale {

/// Sends `call`. The answer is a reply or an error; it comes on the thread that asked, and always.
[[nodiscard]] QFuture<QDBusMessage> askBus(const QDBusConnection &bus, const QDBusMessage &call);

/// An error says that nobody is there who understands such calls, rather than that they are refused.
[[nodiscard]] bool isMissing(const QDBusMessage &error);

} // namespace tarnvale
