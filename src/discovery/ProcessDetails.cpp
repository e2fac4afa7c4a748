#include "discovery/ProcessDetails.h"

#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tarnvale {

namespace {

std::vector<std::string_view> splitDroppingEmpty(std::string_view text, char separator) {
    std::vector<std::string_view> pieces = split(text, separator);
    std::erase_if(pieces, [](std::string_view piece) { return piece.empty(); });
    return pieces;
}

/// The seconds in `[[dd-]hh:]mm:ss` (ps(1), etime).
std::optional<double> parseElapsed(std::string_view token) {
    const auto parts = splitDroppingEmpty(token, '-');
    if (parts.empty())
        return std::nullopt;
    double seconds = parts.size() == 2 ? parseDouble(parts[0]).value_or(0) * 86400 : 0;
    static constexpr std::array<double, 3> weights{1, 60, 3600};
    const auto fields = split(parts.back(), ':');
    for (std::size_t i = 0; i < std::min(fields.size(), weights.size()); ++i)
        seconds += parseDouble(fields[fields.size() - 1 - i]).value_or(0) * weights.at(i);
    return seconds;
}

double parsePercent(std::string_view token) {
    std::string number(token);
    std::replace(number.begin(), number.end(), ',', '.');
    return parseDouble(number).value_or(0);
}

} // namespace

// Sample rows, the second in a locale with a decimal comma:
//   "  512     1    45:02   0.3  20480 /usr/sbin/httpd -D FOREGROUND"
//   "90210   512 3-01:00:00 12,5 102400 node server.js"
ProcessDetailsMap parseProcessDetails(std::string_view text) {
    ProcessDetailsMap result;
    for (std::string_view line : nonEmptyLines(text)) {
        const auto pid = parseInteger<Pid>(takeWord(line));
        const auto ppid = parseInteger<Pid>(takeWord(line));
        const auto uptime = parseElapsed(takeWord(line));
        const std::string_view cpu = takeWord(line);
        const std::string_view memory = takeWord(line);
        if (!pid || !ppid || !uptime)
            continue;
        line.remove_prefix(leadingWhitespace(line));
        result[*pid] = {.ppid = *ppid,
                        .uptime = *uptime,
                        .args = std::string(line),
                        .cpu = parsePercent(cpu),
                        .memoryKB = parseInteger<std::int64_t>(memory).value_or(0),
                        .startedAt = std::nullopt};
    }
    return result;
}

Instant startOf(const ProcessDetails &details, Instant now) {
    // Ages beyond a century are nonsense that must not overflow the clock.
    constexpr double longest = 100.0 * 365 * 86400;
    const double age = std::clamp(details.uptime, -longest, longest);
    return details.startedAt.value_or(now - std::chrono::milliseconds(std::llround(age * 1000)));
}

} // namespace tarnvale
