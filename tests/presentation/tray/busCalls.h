#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantList>

namespace tarnvale {

/// The answer to `call`; its sender and its receiver may both be in this program.
[[nodiscard]] QDBusMessage answerTo(const QDBusConnection &bus, const QDBusMessage &call);

/// Gathers what an object signals.
class SignalRecorder : public QObject {
    Q_OBJECT
public:
    SignalRecorder(QDBusConnection bus, const QString &sender, const QString &path, const QString &interface,
                   const QString &name);

    QList<QVariantList> heard; ///< the arguments of each

private Q_SLOTS:
    void onSignal(const QDBusMessage &message) { heard.append(message.arguments()); }
};

} // namespace tarnvale
