#include "commands/automation/claimOnBus.h"

#include "commands/automation/applicationId.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDeadlineTimer>

#include <algorithm>

namespace tarnvale {

namespace {

/// Milliseconds for a call; never 0, with which it would end before it began.
int timeFor(const QDeadlineTimer &deadline) {
    return static_cast<int>(std::max<qint64>(deadline.remainingTime(), 1));
}

enum class NameRequest : std::uint8_t { owned, ownedByAnother, failed };

/// Asks the bus for the name (org.freedesktop.DBus.RequestName).
NameRequest requestName(const QDBusConnection &bus, std::chrono::milliseconds patience) {
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint alreadyOwner = 4;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    call << applicationName << doNotQueue;
    const QDBusMessage reply = bus.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return NameRequest::failed;
    const uint code = reply.arguments().front().toUInt();
    return code == primaryOwner || code == alreadyOwner ? NameRequest::owned : NameRequest::ownedByAnother;
}

QDBusMessage callFor(const ApplicationRequest &request) {
    const bool isAction = !request.action.isEmpty();
    QDBusMessage call = QDBusMessage::createMethodCall(applicationName, applicationPath, applicationInterface,
                                                       isAction ? QStringLiteral("ActivateAction")
                                                                : QStringLiteral("Activate"));
    // The owner that was there a moment ago is meant, not a new one.
    call.setAutoStartService(false);
    if (isAction)
        call << request.action << QVariant(request.parameters);
    call << platformDataWith(request.activationToken);
    return call;
}

/// The error may only mean that the owner has gone, or that its time is over.
bool mayHaveGone(const QDBusMessage &reply) {
    const QString noOwner = QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
    const QDBusError::ErrorType type = QDBusError(reply).type();
    return type == QDBusError::NoReply || type == QDBusError::ServiceUnknown ||
           type == QDBusError::TimedOut || type == QDBusError::Timeout || reply.errorName() == noOwner;
}

} // namespace

Claim claimOnBus(const QDBusConnection &bus, const std::optional<ApplicationRequest> &request,
                 std::chrono::milliseconds patience) {
    const QDeadlineTimer deadline(patience);
    while (true) {
        const NameRequest name = requestName(bus, patience);
        if (name == NameRequest::failed)
            return {Claim::Kind::unavailable, {}};
        if (name == NameRequest::owned)
            return {Claim::Kind::taken, {}};
        if (!request)
            return {Claim::Kind::answered, {}};
        if (deadline.hasExpired())
            return {Claim::Kind::silent, {}};
        const QDBusMessage reply = bus.call(callFor(*request), QDBus::Block, timeFor(deadline));
        if (reply.type() == QDBusMessage::ReplyMessage)
            return {Claim::Kind::answered, {}};
        if (!mayHaveGone(reply))
            return {Claim::Kind::refused, reply.errorMessage()};
    }
}

} // namespace tarnvale
