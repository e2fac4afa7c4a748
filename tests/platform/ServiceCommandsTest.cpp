#include "platform/ServiceCommands.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(ServiceCommandsTest, launchdIsToldByLaunchctl) {
    const ToolRun stop = stopServiceRun("com.example.web", ServiceManager::launchd, 501);
    EXPECT_EQ(stop.path, "/bin/launchctl");
    EXPECT_THAT(stop.arguments, ElementsAre("bootout", "gui/501/com.example.web"));
    EXPECT_FALSE(stop.mergesError);
    EXPECT_EQ(stop.timeout, 10s);
    const ToolRun restart = restartServiceRun("com.example.web", ServiceManager::launchd, 501);
    EXPECT_EQ(restart.path, "/bin/launchctl");
    EXPECT_THAT(restart.arguments, ElementsAre("kickstart", "-k", "gui/501/com.example.web"));
    EXPECT_EQ(restart.timeout, 10s);
}

TEST(ServiceCommandsTest, aUsersUnitIsToldToTheUsersManager) {
    const ToolRun stop = stopServiceRun("web.service", ServiceManager::systemdUser, 1000, "/bin/systemctl");
    EXPECT_EQ(stop.path, "/bin/systemctl");
    EXPECT_THAT(stop.arguments, ElementsAre("--user", "stop", "--", "web.service"));
    EXPECT_FALSE(stop.mergesError);
    EXPECT_EQ(stop.timeout, 10s);
    const ToolRun restart = restartServiceRun("web.service", ServiceManager::systemdUser, 1000);
    EXPECT_EQ(restart.path, "/usr/bin/systemctl");
    EXPECT_THAT(restart.arguments, ElementsAre("--user", "restart", "--", "web.service"));
    EXPECT_EQ(restart.timeout, 10s);
}

TEST(ServiceCommandsTest, aSystemUnitLeavesTheUserTimeToAllowIt) {
    const ToolRun stop = stopServiceRun("nginx.service", ServiceManager::systemd, 1000);
    EXPECT_THAT(stop.arguments, ElementsAre("stop", "--", "nginx.service"));
    EXPECT_EQ(stop.timeout, 60s);
    const ToolRun restart = restartServiceRun("nginx.service", ServiceManager::systemd, 1000);
    EXPECT_THAT(restart.arguments, ElementsAre("restart", "--", "nginx.service"));
    EXPECT_EQ(restart.timeout, 60s);
}

TEST(ServiceCommandsTest, anOddNameIsNeitherOptionNorPattern) {
    struct Row {
        const char *label;
        const char *word;
        const char *reason;
    };
    const Row rows[]{
        {"--all.service", "--all.service", "it stands behind the end of the options"},
        {"*", "\\x2a", "else it would stop everything"},
        {"a?b[c].service", "a\\x3fb\\x5bc].service", "the other patterns"},
        {"my\\x2dweb@1:2.service", "my\\x2dweb@1:2.service", "what unit names are made of stays"},
        {"", "", "nothing to stop"},
    };
    for (const Row &row : rows)
        for (const auto &run : {stopServiceRun(row.label, ServiceManager::systemd, 0),
                                restartServiceRun(row.label, ServiceManager::systemdUser, 0)}) {
            ASSERT_GE(run.arguments.size(), 3U);
            EXPECT_EQ(run.arguments.back(), row.word) << row.reason;
            EXPECT_EQ(run.arguments[run.arguments.size() - 2], "--") << row.reason;
        }
}

} // namespace
} // namespace tarnvale
