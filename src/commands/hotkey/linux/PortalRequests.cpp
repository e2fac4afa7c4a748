#include "commands/hotkey/linux/PortalRequests.h"

#include "commands/hotkey/linux/askBus.h"

#include <QCoroFuture>
#include <QUuid>

namespace tarnvale {

namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// Where the portal makes the request of connection `sender`, as in ":1.42", that bears `token`. Only portals
/// older than global shortcuts choose the path themselves.
QString pathOf(const QString &sender, const QString &token) {
    const QString name = sender.mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(name, token);
}

} // namespace

QFuture<PortalAnswer> PortalRequests::send(const QString &method, const QVariantList &arguments,
                                           QVariantMap options) {
    abandon();
    const QString token = QStringLiteral("tarnvale_") + QUuid::createUuid().toString(QUuid::Id128);
    options.insert(QStringLiteral("handle_token"), token);
    listenAt(pathOf(m_bus.baseService(), token)); // before the call: the response may be quicker than we
    QDBusMessage call = QDBusMessage::createMethodCall(service, object, m_interface, method);
    call.setArguments(arguments + QVariantList{options});
    QFuture<PortalAnswer> future = m_pending.begin();
    await(this, m_round, askBus(m_bus, call));
    return future;
}

void PortalRequests::abandon() {
    ++m_round;
    stopListening();
    m_isAccepted = false;
    m_early.reset();
    m_pending.abandon();
}

QCoro::Task<> PortalRequests::await(QPointer<PortalRequests> self, std::uint64_t round,
                                    QFuture<QDBusMessage> reply) {
    const QDBusMessage answer = co_await reply;
    if (!self || self->m_round != round)
        co_return;
    if (answer.type() != QDBusMessage::ReplyMessage) {
        self->m_pending.give(
            {.kind = isMissing(answer) ? PortalAnswer::Kind::missing : PortalAnswer::Kind::refused});
        co_return;
    }
    self->m_portal = answer.service();
    self->m_isAccepted = true;
    if (self->m_early)
        self->take(*self->m_early);
}

void PortalRequests::onResponse(uint response, const QVariantMap &results, const QDBusMessage &message) {
    const Response arrived{message.service(), response, results};
    if (m_isAccepted)
        take(arrived);
    else
        m_early = arrived;
}

/// Anyone may send such a signal: what counts is its sender.
void PortalRequests::take(const Response &response) {
    if (response.sender != m_portal)
        return;
    const PortalAnswer answer{.kind = response.code == 0 ? PortalAnswer::Kind::granted
                                                         : PortalAnswer::Kind::refused,
                              .results = response.results};
    stopListening();
    m_pending.give(answer);
}

void PortalRequests::listenAt(const QString &path) {
    m_path = path;
    m_bus.connect(QString(), m_path, requestInterface, QStringLiteral("Response"), this,
                  SLOT(onResponse(uint, QVariantMap, QDBusMessage)));
}

void PortalRequests::stopListening() {
    const QString path = std::exchange(m_path, {});
    if (!path.isEmpty())
        m_bus.disconnect(QString(), path, requestInterface, QStringLiteral("Response"), this,
                         SLOT(onResponse(uint, QVariantMap, QDBusMessage)));
}

} // namespace tarnvale
