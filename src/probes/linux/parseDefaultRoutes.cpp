#include "probes/linux/parseDefaultRoutes.h"

#include "discovery/text.h"

#include <algorithm>
#include <charconv>
#include <linux/route.h>
#include <optional>

namespace tarnvale {

namespace {

std::optional<unsigned> parseHex(std::string_view text) {
    unsigned number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

} // namespace

// Iface  Destination  Gateway   Flags  RefCnt  Use  Metric  Mask      MTU  Window  IRTT
// wlan0  00000000     0101A8C0  0003   0       0    600     00000000  0    0       0
DefaultRoutes parseDefaultRoutes(std::string_view table) {
    constexpr std::size_t columns = 8;
    DefaultRoutes routes;
    for (const std::string_view line : nonEmptyLines(table)) {
        const auto row = words(line, columns);
        if (row.size() < columns || parseHex(row[1]) != 0u || parseHex(row[7]) != 0u)
            continue;
        const auto flags = parseHex(row[3]);
        const auto metric = parseInteger<std::uint32_t>(row[6]);
        if (!flags || !metric || (*flags & (RTF_UP | RTF_REJECT)) != RTF_UP)
            continue;
        const auto [route, isNew] = routes.try_emplace(std::string(row[0]), *metric);
        route->second = std::min(route->second, *metric);
    }
    return routes;
}

} // namespace tarnvale
