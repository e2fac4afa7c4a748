#include "presentation/PortGroup.h"

#include "presentation/WebServers.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const WebTest nothingIsWeb = webServers({});

TEST(PortGroupTest, sectionsStandInOrderAndHaveTheirTitles) {
    std::vector<std::string> titles;
    for (const PortGroup group : portGroups)
        titles.push_back(title(group).toStdString());
    EXPECT_EQ(titles, (std::vector<std::string>{"Web", "Databases & Services", "Other"}));
}

TEST(PortGroupTest, aWebServerIsOneWhateverElseItIs) {
    const WebTest isWeb = webServers({5432});
    EXPECT_EQ(portGroup({.command = "postgres", .port = 5432}, isWeb), PortGroup::web);
    EXPECT_EQ(portGroup({.command = "postgres", .port = 5432}, nothingIsWeb), PortGroup::services);
    EXPECT_EQ(portGroup({.command = "x", .port = 5432, .service = "s", .container = "c · i"}, isWeb),
              PortGroup::web);
}

TEST(PortGroupTest, aServiceAContainerOrADatabaseIsAService) {
    struct Row {
        ListeningPort port;
        PortGroup group;
    };
    const std::vector<Row> rows{
        {{.command = "x", .port = 3000, .service = "x.service"}, PortGroup::services},
        {{.command = "docker-proxy", .port = 3000, .container = "api · img"}, PortGroup::services},
        {{.command = "docker-proxy", .port = 5432, .container = "db · postgres:16"}, PortGroup::services},
        {{.command = "docker-proxy", .port = 3000}, PortGroup::other},
        {{.command = "redis-server", .port = 6379, .cwd = "/home/me/shop"}, PortGroup::services},
        {{.command = "memcached", .port = 11211}, PortGroup::services},
        {{.command = "clickhouse", .port = 9000, .cwd = "/srv/ch"}, PortGroup::services},
        {{.command = "clickhouse", .port = 9000}, PortGroup::other}, // a system process's style
        {{.command = "node", .port = 3000, .cwd = "/home/me/shop"}, PortGroup::other},
        {{.command = "nginx", .port = 80}, PortGroup::other},
        {{}, PortGroup::other},
    };
    for (const Row &row : rows)
        EXPECT_EQ(portGroup(row.port, nothingIsWeb), row.group) << row.port.command << row.port.port;
}

TEST(PortGroupTest, theWebTestSeesTheWholeRecord) {
    const ListeningPort port{.pid = 7, .command = "node", .port = 3000};
    std::vector<ListeningPort> asked;
    const WebTest isWeb = [&](const ListeningPort &one) {
        asked.push_back(one);
        return true;
    };
    EXPECT_EQ(portGroup(port, isWeb), PortGroup::web);
    EXPECT_EQ(asked, std::vector{port});
}

} // namespace
} // namespace tarnvale
