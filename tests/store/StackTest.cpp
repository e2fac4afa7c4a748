#include "store/Stack.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Command = Stack::Command;

ListeningPort server(std::int64_t port, const std::string &args, const std::string &cwd = "/home/me/shop") {
    return {.pid = 42, .command = "node", .port = port, .cwd = cwd, .args = args};
}

TEST(RunningCommandsTest, commandsAreKnownByTextAndFolder) {
    ListeningPort noFolder = server(1, "a");
    noFolder.cwd.reset();
    ListeningPort noArgs = server(2, "b");
    noArgs.args.reset();
    EXPECT_THAT(runningCommands({noFolder, noArgs, server(3, "c"), server(4, "c")}),
                ElementsAre(Command{"a", ""}, Command{"c", "/home/me/shop"}));
}

TEST(CommandsBesideTest, allOfTheFolderBelongTogether) {
    const auto one = server(3000, "node a.js");
    const std::vector<ListeningPort> ports{server(5000, "node b.js"), one, server(3001, "node a.js"),
                                           server(4000, "node c.js", "/home/me/blog")};
    EXPECT_THAT(commandsBeside(one, ports),
                ElementsAre(Command{"node b.js", "/home/me/shop"}, Command{"node a.js", "/home/me/shop"}));
}

TEST(CommandsBesideTest, aContainersRecordCountsToo) {
    auto proxy = server(8080, "docker-proxy");
    proxy.container = "web · nginx";
    EXPECT_THAT(commandsBeside(server(3000, "node a.js"), {proxy}),
                ElementsAre(Command{"docker-proxy", "/home/me/shop"}));
}

TEST(CommandsBesideTest, withoutAProjectThereIsNone) {
    struct Row {
        std::string reason;
        ListeningPort port;
    };
    auto service = server(3000, "x");
    service.service = "web.service";
    auto noFolder = server(3000, "x");
    noFolder.cwd.reset();
    const std::vector<Row> rows{{"a service", service},
                                {"no folder", noFolder},
                                {"the root", server(3000, "x", "/")},
                                {"a folder with a generic name", server(3000, "x", "/usr/bin")}};
    for (const Row &row : rows)
        EXPECT_THAT(commandsBeside(row.port, {row.port}), IsEmpty()) << row.reason;
}

TEST(PutStackTest, aNewNameIsAddedBehindTheOthers) {
    std::vector<Stack> stacks;
    putStack(stacks, "shop", {{"a", "/x"}});
    putStack(stacks, "Shop", {{"b", "/x"}});
    ASSERT_EQ(stacks.size(), 2u) << "names differ by case";
    EXPECT_FALSE(stacks[0].id.isNull());
    EXPECT_NE(stacks[0].id, stacks[1].id);
    EXPECT_EQ(stacks[1].name, "Shop");
}

TEST(PutStackTest, aKnownNameKeepsItsIdAndPlace) {
    std::vector<Stack> stacks;
    putStack(stacks, "shop", {{"a", "/x"}});
    putStack(stacks, "blog", {{"b", "/x"}});
    const QUuid id = stacks[0].id;
    putStack(stacks, "shop", {{"c", "/y"}, {"d", "/y"}});
    ASSERT_EQ(stacks.size(), 2u);
    EXPECT_EQ(stacks[0].id, id);
    EXPECT_THAT(stacks[0].commands, ElementsAre(Command{"c", "/y"}, Command{"d", "/y"}));
}

} // namespace
} // namespace tarnvale
