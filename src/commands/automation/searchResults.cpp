#include "commands/automation/searchResults.h"

#include "commands/automation/matchesTerms.h"
#include "commands/automation/shortcuts.h"
#include "discovery/text.h"

#include <algorithm>
#include <set>

namespace tarnvale {

namespace {

constexpr qsizetype longestId = 32;

bool asksToFree(const QString &term) {
    return term.compare(QLatin1String("free"), Qt::CaseInsensitive) == 0 ||
           term.compare(QLatin1String("stop"), Qt::CaseInsensitive) == 0;
}

/// `terms` without the words that ask to free; nothing when there are none.
std::optional<QStringList> termsOfFreeing(const QStringList &terms) {
    QStringList rest = terms;
    const auto words = rest.removeIf(asksToFree);
    return words > 0 ? std::optional(rest) : std::nullopt;
}

} // namespace

QString SearchResult::id() const {
    const QString verb = kind == Kind::open ? QStringLiteral("open") : QStringLiteral("free");
    return QStringLiteral("%1:%2:%3").arg(verb).arg(port).arg(pid);
}

std::optional<SearchResult> SearchResult::parse(const QString &id) {
    if (id.size() > longestId)
        return std::nullopt;
    const std::string text = id.toStdString();
    const auto parts = split(text, ':');
    if (parts.size() != 3)
        return std::nullopt;
    const auto port = parseInteger<std::int64_t>(parts[1]);
    const auto pid = parseInteger<Pid>(parts[2]);
    if (!port || !isPortNumber(*port) || !pid || *pid < 1)
        return std::nullopt;
    const SearchResult result{parts[0] == "free" ? Kind::free : Kind::open, *port, *pid};
    return result.id() == id ? std::optional(result) : std::nullopt;
}

std::vector<SearchResult> searchResults(const std::vector<ListeningPort> &ports, const QStringList &terms) {
    const auto freeing = termsOfFreeing(terms);
    std::vector<SearchResult> results;
    std::set<std::int64_t> seen;
    for (const ListeningPort &port : ports) {
        const bool isFreed = freeing && matchesTerms(port, *freeing);
        if (!(isFreed || matchesTerms(port, terms)) || !isPortNumber(port.port) || port.pid < 1 ||
            !seen.insert(port.port).second)
            continue;
        results.push_back({SearchResult::Kind::open, port.port, port.pid});
        if (isFreed)
            results.push_back({SearchResult::Kind::free, port.port, port.pid});
    }
    results.resize(std::min(results.size(), mostSearchResults));
    return results;
}

const ListeningPort *recordOf(const SearchResult &result, const std::vector<ListeningPort> &ports) {
    const auto found = std::find_if(ports.begin(), ports.end(), [&](const ListeningPort &port) {
        return port.port == result.port && port.pid == result.pid;
    });
    return found == ports.end() ? nullptr : &*found;
}

} // namespace tarnvale
