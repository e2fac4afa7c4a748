#pragma once

#include "discovery/ListeningPort.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tarnvale {

/// What a desktop's search offers: to open a port, or to free it from the process that it showed.
struct SearchResult {
    enum class Kind : std::uint8_t { open, free };

    Kind kind = Kind::open;
    std::int64_t port = 0;
    Pid pid = 0;

    /// "open:3000:4242" or "free:3000:4242".
    [[nodiscard]] QString id() const;

    /// What `id` wrote, to the letter; nothing for any other text.
    [[nodiscard]] static std::optional<SearchResult> parse(const QString &id);

    bool operator==(const SearchResult &) const = default;
};

/// How many results a search gives.
constexpr std::size_t mostSearchResults = 10;

/// What `terms` find among `ports`, in their order, each port number once. Freeing is offered only to who
/// says so ("free 3000", "stop shop"), and after the opening of the same port.
[[nodiscard]] std::vector<SearchResult> searchResults(const std::vector<ListeningPort> &ports,
                                                      const QStringList &terms);

/// The record that a result was made from; null when it is no longer there.
[[nodiscard]] const ListeningPort *recordOf(const SearchResult &result,
                                            const std::vector<ListeningPort> &ports);

} // namespace tarnvale
