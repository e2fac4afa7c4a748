#include "presentation/PortFilter.h"

#include "presentation/WebServers.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const std::vector<ListeningPort> samples{
    {.pid = 1, .command = "node", .port = 3000, .cwd = "/src/shop", .agent = "Claude Code"},
    {.pid = 2, .command = "node", .port = 3001, .cwd = "/src/shop"},
    {.pid = 3, .command = "postgres", .port = 5432},
    {.pid = 4, .command = "x", .port = 6000, .service = "x.service", .agent = "Codex"},
    {.pid = 5, .command = "docker-proxy", .port = 8080, .container = "web · nginx"},
    {.pid = 6, .command = "docker-proxy", .port = 8081, .container = "api · img"},
    {.pid = 7, .command = "rapportd", .port = 49152},
};
const WebTest isWeb = webServers({3000, 3001, 8080});

std::vector<std::int64_t> matching(PortFilter filter) {
    std::vector<std::int64_t> result;
    for (const ListeningPort &port : samples)
        if (matchesFilter(port, filter, isWeb))
            result.push_back(port.port);
    return result;
}

using Ports = std::vector<std::int64_t>;

TEST(PortFilterTest, chipsStandInOrderAndHaveTheirTitles) {
    std::vector<std::string> titles;
    for (const PortFilter filter : portFilters)
        titles.push_back(title(filter).toStdString());
    EXPECT_EQ(titles, (std::vector<std::string>{"All", "Agents", "Web", "Services", "Other"}));
}

TEST(PortFilterTest, everyChipKeepsItsPorts) {
    EXPECT_EQ(matching(PortFilter::all), (Ports{3000, 3001, 5432, 6000, 8080, 8081, 49152}));
    EXPECT_EQ(matching(PortFilter::agents), (Ports{3000, 6000}));
    EXPECT_EQ(matching(PortFilter::web), (Ports{3000, 3001, 8080}));
    EXPECT_EQ(matching(PortFilter::services), (Ports{5432, 6000, 8081}));
    EXPECT_EQ(matching(PortFilter::other), (Ports{49152}));
}

TEST(PortFilterTest, threeChipsAgreeWithTheSections) {
    const std::vector<std::pair<PortFilter, PortGroup>> pairs{{PortFilter::web, PortGroup::web},
                                                              {PortFilter::services, PortGroup::services},
                                                              {PortFilter::other, PortGroup::other}};
    for (const ListeningPort &port : samples)
        for (const auto &[filter, group] : pairs)
            EXPECT_EQ(matchesFilter(port, filter, isWeb), portGroup(port, isWeb) == group) << port.port;
}

} // namespace
} // namespace tarnvale
