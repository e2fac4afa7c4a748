#pragma once

#include "commands/hotkey/PendingAnswer.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

namespace tarnvale {

/// What has become of a request to the desktop portal.
struct PortalAnswer {
    enum class Kind { granted, refused, missing };

    Kind kind = Kind::missing;
    QVariantMap results{};
};

/// Requests to the desktop portal on one of its interfaces, one at a time. A request is a call, whose result
/// comes later in a signal (org.freedesktop.portal.Request).
class PortalRequests : public QObject {
    Q_OBJECT
public:
    PortalRequests(QDBusConnection bus, QString interface)
        : m_bus(std::move(bus)), m_interface(std::move(interface)) {}

    /// Calls `method` with `arguments`, and `options` behind them. One that still waits is `missing`.
    [[nodiscard]] QFuture<PortalAnswer> send(const QString &method, const QVariantList &arguments,
                                             QVariantMap options = {});

    /// The portal has gone: what waits is `missing`.
    void abandon();

    /// The unique name of the portal that has answered last; empty before.
    [[nodiscard]] const QString &portal() const { return m_portal; }

    static inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString object = QStringLiteral("/org/freedesktop/portal/desktop");

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap &results, const QDBusMessage &message);

private:
    struct Response {
        QString sender;
        uint code = 0;
        QVariantMap results;
    };

    static QCoro::Task<> await(QPointer<PortalRequests> self, std::uint64_t round,
                               QFuture<QDBusMessage> reply);

    void listenAt(const QString &path);
    void stopListening();
    void take(const Response &response);

    QDBusConnection m_bus;
    QString m_interface;
    QString m_portal;
    QString m_path;                  ///< where the response will come
    bool m_isAccepted = false;       ///< the call has been answered
    std::optional<Response> m_early; ///< came before the answer to the call, from whomever
    std::uint64_t m_round = 0;
    PendingAnswer<PortalAnswer> m_pending{PortalAnswer()};
};

} // namespace tarnvale
