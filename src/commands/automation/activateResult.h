#pragma once

#include "commands/automation/searchResults.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>
#include <optional>

namespace tarnvale {

class ShortcutQueue;

/// "3000 · shop", or "Free port 3000".
[[nodiscard]] QString titleOf(const SearchResult &result, const ListeningPort &port);

/// The line below it: the address, or what would be stopped.
[[nodiscard]] QString descriptionOf(const SearchResult &result, const ListeningPort &port);

/// A call and where it came from.
struct ReceivedCall {
    QDBusConnection bus;
    QDBusMessage message;
};

/// Does what a result offers and answers `call`, at once: what comes of freeing is handed to `tell` later.
/// Without a result the call had a wrong argument.
void activateResult(const std::optional<SearchResult> &result, const ReceivedCall &call, ShortcutQueue &queue,
                    const std::function<void(const QString &)> &tell);

} // namespace tarnvale
