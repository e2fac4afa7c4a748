#include "presentation/tray/busCalls.h"

#include "support/ManualClock.h"

#include <QDBusPendingCall>

#include <gtest/gtest.h>

namespace tarnvale {

QDBusMessage answerTo(const QDBusConnection &bus, const QDBusMessage &call) {
    const QDBusPendingCall pending = bus.asyncCall(call);
    EXPECT_TRUE(waitFor([&] { return pending.isFinished(); }));
    return pending.reply();
}

SignalRecorder::SignalRecorder(QDBusConnection bus, const QString &sender, const QString &path,
                               const QString &interface, const QString &name) {
    bus.connect(sender, path, interface, name, this, SLOT(onSignal(QDBusMessage)));
}

} // namespace tarnvale
