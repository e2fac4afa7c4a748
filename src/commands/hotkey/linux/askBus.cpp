#include "commands/hotkey/linux/askBus.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QPromise>

#include <memory>

namespace tarnvale {

QFuture<QDBusMessage> askBus(const QDBusConnection &bus, const QDBusMessage &call) {
    const auto promise = std::make_shared<QPromise<QDBusMessage>>();
    promise->start();
    if (!bus.isConnected()) { // such a call would never come back
        promise->addResult(QDBusMessage::createError(QDBusError::Disconnected, {}));
        promise->finish();
        return promise->future();
    }
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [promise, watcher] {
        promise->addResult(watcher->reply());
        promise->finish();
        watcher->deleteLater();
    });
    return promise->future();
}

bool isMissing(const QDBusMessage &error) {
    switch (QDBusError(error).type()) {
    case QDBusError::AccessDenied:
    case QDBusError::Failed:
    case QDBusError::InvalidArgs:
        return false;
    default:
        // Those of the bus and of D-Bus itself; a service that is there has errors of its own.
        return error.errorName().startsWith(QLatin1String("org.freedesktop.DBus."));
    }
}

} // namespace tarnvale
