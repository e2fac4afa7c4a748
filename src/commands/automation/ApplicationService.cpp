#include "commands/automation/ApplicationService.h"

#include "commands/automation/ShortcutQueue.h"
#include "commands/automation/replies.h"
#include "discovery/text.h"

namespace tarnvale {

namespace {

using Refusal = ApplicationService::Refusal;

const QString freePortAction = QStringLiteral("free-port");
const QString openPortAction = QStringLiteral("open-port");

std::unexpected<Refusal> invalid(const QString &text) {
    return std::unexpected(Refusal{QDBusError::InvalidArgs, text});
}

std::unexpected<Refusal> flood() {
    return std::unexpected(Refusal{QDBusError::LimitsExceeded, tooManyWaiting()});
}

/// The port in the parameters of an action: one 32-bit number, or one text of digits.
std::expected<std::int64_t, Refusal> portIn(const QVariantList &parameters) {
    constexpr qsizetype longestNumber = 20;
    if (parameters.size() != 1)
        return invalid(QStringLiteral("The action takes one parameter, the port."));
    const QVariant &parameter = parameters.front();
    std::optional<std::int64_t> port;
    if (parameter.typeId() == QMetaType::Int)
        port = parameter.toInt();
    else if (parameter.typeId() == QMetaType::QString && parameter.toString().size() <= longestNumber)
        port = parseInteger<std::int64_t>(parameter.toString().toStdString());
    if (!port)
        return invalid(QStringLiteral("The port must be a number or its text."));
    if (!isPortNumber(*port))
        return invalid(outsidePortRange(*port));
    return *port;
}

} // namespace

ApplicationService::ApplicationService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue)
    : QDBusAbstractAdaptor(object), m_bus(bus), m_queue(queue) {}

void ApplicationService::start(ApplicationActions actions) {
    m_actions = std::move(actions);
    m_isStarted = true;
    for (const Waiting &waiting : std::exchange(m_waiting, {}))
        waiting.answer(performNow(waiting.request));
}

void ApplicationService::perform(const ApplicationRequest &request, const Answer &answer) {
    if (m_isStarted)
        answer(performNow(request));
    else if (m_waiting.size() < mostWaiting)
        m_waiting.push_back({request, answer});
    else
        answer(flood());
}

ApplicationService::Outcome ApplicationService::performNow(const ApplicationRequest &request) {
    if (request.action == freePortAction || request.action == openPortAction)
        return performWithPort(request);
    if (!request.parameters.isEmpty())
        return invalid(QStringLiteral("The action takes no parameters."));
    return performPlain(request);
}

ApplicationService::Outcome ApplicationService::performWithPort(const ApplicationRequest &request) {
    const auto port = portIn(request.parameters);
    if (!port)
        return std::unexpected(port.error());
    if (request.action == openPortAction) {
        m_queue.open(*port);
        return {};
    }
    if (!m_queue.free(*port, std::nullopt, [this](const QString &dialog) { tell(dialog); }))
        return flood();
    return {};
}

ApplicationService::Outcome ApplicationService::performPlain(const ApplicationRequest &request) {
    const QString &action = request.action;
    if (action == QLatin1String("list")) {
        if (!m_queue.list([this](const DevPorts &ports) { tell(ports.dialog); }))
            return flood();
    } else if (action.isEmpty() && m_actions.activate) {
        m_actions.activate(request.activationToken);
    } else if (action == QLatin1String("toggle-panel") && m_actions.togglePanel) {
        m_actions.togglePanel(request.activationToken);
    } else if (action == QLatin1String("show-window") && m_actions.showWindow) {
        m_actions.showWindow(request.activationToken);
    } else if (action == QLatin1String("quit") && m_actions.quit) {
        // After the answer has been sent.
        QMetaObject::invokeMethod(this, m_actions.quit, Qt::QueuedConnection);
    } else {
        return invalid(QStringLiteral("There is no action \"%1\".").arg(action.left(100)));
    }
    return {};
}

void ApplicationService::tell(const QString &dialog) const {
    if (m_actions.tell)
        m_actions.tell(dialog);
}

void ApplicationService::take(const ApplicationRequest &request, const QDBusMessage &call) {
    call.setDelayedReply(true);
    perform(request, [bus = m_bus, call](const Outcome &outcome) {
        if (outcome)
            bus.send(call.createReply());
        else
            sendError(bus, call, outcome.error().type, outcome.error().text);
    });
}

void ApplicationService::Activate(const QVariantMap &platformData, const QDBusMessage &call) {
    take({.action = {}, .parameters = {}, .activationToken = activationTokenIn(platformData)}, call);
}

void ApplicationService::Open(const QStringList &, const QVariantMap &platformData,
                              const QDBusMessage &call) {
    Activate(platformData, call);
}

void ApplicationService::ActivateAction(const QString &action, const QVariantList &parameters,
                                        const QVariantMap &platformData, const QDBusMessage &call) {
    if (!action.isEmpty()) {
        take({action, parameters, activationTokenIn(platformData)}, call);
        return;
    }
    call.setDelayedReply(true);
    sendError(m_bus, call, QDBusError::InvalidArgs, QStringLiteral("The action has no name."));
}

} // namespace tarnvale
