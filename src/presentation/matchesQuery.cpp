#include "presentation/matchesQuery.h"

#include "discovery/text.h"

#include <algorithm>

namespace tarnvale {

namespace {

std::string forSearch(const QString &text) {
    return text.toLower().normalized(QString::NormalizationForm_C).toStdString();
}

/// Nearly every field is plain ASCII, and a long list is searched at each key: those need no QString.
std::string forSearch(const std::string &text) {
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return isAscii ? lowercased(text) : forSearch(QString::fromStdString(text));
}

} // namespace

PortTest queryTest(const QString &query, const ApplicationName &applicationName) {
    const auto wanted = forSearch(query.trimmed());
    if (wanted.empty())
        return [](const ListeningPort &) { return true; };
    return [wanted, applicationName](const ListeningPort &port) {
        const auto holds = [&](const std::string &field) {
            return forSearch(field).find(wanted) != std::string::npos;
        };
        return holds(std::to_string(port.port)) || holds(port.title()) || holds(port.command) ||
               (port.service && holds(*port.service)) ||
               (port.hostApp && holds(applicationName(*port.hostApp))) || (port.agent && holds(*port.agent));
    };
}

bool matchesQuery(const ListeningPort &port, const QString &query, const ApplicationName &applicationName) {
    return queryTest(query, applicationName)(port);
}

} // namespace tarnvale
