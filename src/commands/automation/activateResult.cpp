#include "commands/automation/activateResult.h"

#include "commands/automation/ShortcutQueue.h"
#include "commands/automation/replies.h"

#include <QCoreApplication>

namespace tarnvale {

QString titleOf(const SearchResult &result, const ListeningPort &port) {
    if (result.kind == SearchResult::Kind::free)
        return QCoreApplication::translate("Shortcuts", "Free port %1").arg(result.port);
    return QStringLiteral("%1 · ").arg(result.port) + QString::fromStdString(portLabel(port));
}

QString descriptionOf(const SearchResult &result, const ListeningPort &port) {
    if (result.kind == SearchResult::Kind::free)
        return QCoreApplication::translate("Shortcuts", "Stop %2 (PID %1)")
            .arg(QString::number(result.pid), QString::fromStdString(portLabel(port)));
    return QStringLiteral("http://localhost:%1").arg(result.port);
}

void activateResult(const std::optional<SearchResult> &result, const ReceivedCall &call, ShortcutQueue &queue,
                    const std::function<void(const QString &)> &tell) {
    if (!result) {
        sendError(call.bus, call.message, QDBusError::InvalidArgs,
                  QStringLiteral("There is no such result."));
        return;
    }
    if (result->kind == SearchResult::Kind::open) {
        queue.open(result->port);
    } else if (!queue.free(
                   result->port, result->pid, tell ? tell : [](const QString &) {})) {
        sendError(call.bus, call.message, QDBusError::LimitsExceeded, tooManyWaiting());
        return;
    }
    call.bus.send(call.message.createReply());
}

} // namespace tarnvale
