#include "store/StoreTest.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class LaunchTest : public StoreTest {
protected:
    LaunchTest() { world.launcher.folder = logs.path(); }

    /// A launched "npm run dev" in the folder `shop` writes `log` and fails.
    Notification failWith(const std::string &log) {
        store->launch("npm run dev", "/home/me/shop", {});
        logs.write("shop-npm-run-dev.log", log);
        world.launcher.launched.back()->fail();
        return world.notifications.posted.empty() ? Notification{} : world.notifications.posted.back();
    }

    TemporaryFolder logs;
    const NotificationPayload payload{.port = 3000, .args = "npm run dev", .cwd = "/home/me/shop", .url = {}};
};

TEST_F(LaunchTest, aCommandIsLaunchedWithALogOfItsOwn) {
    start();
    EXPECT_TRUE(store->launch("npm run dev", "/home/me/shop",
                              {.exec = "exact words", .environment = {{{"A", "b"}}}}));
    ASSERT_EQ(world.launcher.launched.size(), 1u);
    const LaunchOrder &order = world.launcher.launched[0]->order;
    EXPECT_EQ(order.command, "exact words");
    EXPECT_EQ(order.folder, "/home/me/shop");
    EXPECT_EQ(order.log, logs.path("shop-npm-run-dev.log"));
    EXPECT_EQ(order.environment->at("A"), "b");
    EXPECT_EQ(world.notifications.requests, 1);
    EXPECT_EQ(error(), "");
}

TEST_F(LaunchTest, whatCannotStartIsExplained) {
    start();
    world.launcher.refusal = "no such folder";
    EXPECT_FALSE(store->launch("npm run dev", "/gone", {}));
    EXPECT_EQ(error(), "Couldn't start npm run dev: no such folder");
    EXPECT_THAT(world.notifications.posted, IsEmpty());
    world.launcher.refusal.reset();
    EXPECT_TRUE(store->launch("npm run dev", "/home/me/shop", {}));
    EXPECT_EQ(error(), "") << "a success clears it";
}

TEST_F(LaunchTest, onlyRunningCommandsAreKept) {
    start();
    store->launch("a", "/x", {});
    const std::weak_ptr<FakeLaunchedCommand> first = world.launcher.launched[0];
    world.launcher.launched.clear();
    store->launch("b", "/x", {});
    EXPECT_FALSE(first.expired());
    first.lock()->isAlive = false;
    store->launch("c", "/x", {});
    EXPECT_TRUE(first.expired());
}

TEST_F(LaunchTest, aFailureIsToldWithItsLastLine) {
    start();
    const Notification told = failWith("starting\nError: cannot find module 'x'\n\n");
    EXPECT_EQ(told, (Notification{.title = "shop: command failed",
                                  .body = "Error: cannot find module 'x'",
                                  .category = {},
                                  .payload = {}}));
}

TEST_F(LaunchTest, withoutALogTheCommandIsTold) {
    start();
    EXPECT_EQ(failWith("").body, "npm run dev");
    EXPECT_EQ(failWith("  \n\t\n").body, "npm run dev");
}

TEST_F(LaunchTest, aConflictNamesTheHolder) {
    addServer(42, 3000, "node other.js", "/home/me/blog");
    start();
    const Notification told = failWith("listen EADDRINUSE: address already in use :::3000\n");
    EXPECT_EQ(told, (Notification{.title = "Port conflict in shop",
                                  .body = "Port 3000 is already in use by node (blog).",
                                  .category = "portConflict",
                                  .payload = payload}));
}

TEST_F(LaunchTest, aHolderWithoutAProjectIsToldByItsPid) {
    world.machine.add({.pid = 42, .path = "/usr/bin/thing", .args = "thing"});
    world.machine.listen(42, 3000);
    start();
    EXPECT_EQ(failWith("EADDRINUSE :::3000").body, "Port 3000 is already in use by thing (PID 42).");
}

TEST_F(LaunchTest, withoutAHolderThereIsNoButton) {
    start();
    EXPECT_EQ(failWith("EADDRINUSE :::3000"), (Notification{.title = "Port conflict in shop",
                                                            .body = "Port 3000 is already in use.",
                                                            .category = {},
                                                            .payload = payload}));
}

TEST_F(LaunchTest, aConflictWithoutAPortNamesTheCommand) {
    start();
    EXPECT_EQ(failWith("port is already allocated"),
              (Notification{.title = "Port conflict in shop",
                            .body = "npm run dev couldn't start: address already in use.",
                            .category = {},
                            .payload = {}}));
}

TEST_F(LaunchTest, onlyTheEndOfALogIsRead) {
    start();
    const std::string line = "EADDRINUSE :::3000\n";
    EXPECT_EQ(failWith(line + std::string(8192, 'x')).title, "shop: command failed");
    EXPECT_EQ(failWith(line + std::string(8192 - line.size(), 'x')).title, "Port conflict in shop");
}

TEST_F(LaunchTest, aFailureAfterTheStoreHasGoneIsNoTrouble) {
    start();
    store->launch("a", "/x", {});
    const auto command = world.launcher.launched[0];
    store.reset();
    command->fail();
    EXPECT_THAT(world.notifications.posted, IsEmpty());
}

TEST_F(LaunchTest, aStackStartsWhatDoesNotRun) {
    addServer(42, 3000, "npm run dev");
    start();
    const Stack stack{.id = QUuid::createUuid(),
                      .name = "shop",
                      .commands = {{"php artisan serve", "/home/me/shop"},
                                   {"npm run dev", "/home/me/shop"},
                                   {"npm run dev", "/home/me/blog"}}};
    const auto flow = store->startStack(stack);
    ASSERT_EQ(world.launcher.launched.size(), 2u) << "at once";
    EXPECT_EQ(world.launcher.launched[0]->order.command, "php artisan serve");
    EXPECT_EQ(world.launcher.launched[1]->order.folder, "/home/me/blog");
    pass(1499ms);
    EXPECT_FALSE(flow.isReady());
    pass(1ms);
    EXPECT_TRUE(flow.isReady());
}

TEST_F(LaunchTest, aStackThatRunsWholeLaunchesNothingAndStillScans) {
    addServer(42, 3000, "npm run dev");
    start();
    world.machine.forgetQuestions();
    finish(store->startStack({.name = "shop", .commands = {{"npm run dev", "/home/me/shop"}}}));
    EXPECT_THAT(world.launcher.launched, IsEmpty());
    EXPECT_FALSE(world.machine.questions().empty());
}

TEST_F(LaunchTest, aCommandThatCannotStartDoesNotStopTheOthers) {
    start();
    world.launcher.refusal = "no";
    finish(store->startStack({.name = "x", .commands = {{"a", "/x"}, {"b", "/x"}}}));
    EXPECT_EQ(error(), "Couldn't start b: no");
}

TEST_F(LaunchTest, stacksAreSavedAndDeleted) {
    start();
    store->saveStack(" shop\t", {{"a", "/home/me/shop"}});
    store->saveStack("  ", {{"b", "/home/me/blog"}});
    store->saveStack("nothing", {});
    ASSERT_EQ(store->stacks().size(), 2u);
    EXPECT_EQ(store->stacks()[0].name, "shop");
    EXPECT_EQ(store->stacks()[1].name, "blog") << "by the folder";
    const QUuid id = store->stacks()[0].id;
    store->saveStack("shop", {{"c", "/x"}});
    EXPECT_EQ(store->stacks()[0].id, id);
    EXPECT_EQ(store->stacks()[0].commands[0].args, "c");
    store->deleteStack(id);
    ASSERT_EQ(store->stacks().size(), 1u);
    EXPECT_EQ(store->stacks()[0].name, "blog");
    const int writes = world.settings.writes;
    store->deleteStack(id);
    EXPECT_EQ(world.settings.writes, writes + 1) << "an id that isn't there is written all the same";
}

TEST_F(LaunchTest, aRunningProjectIsSavedAsAStack) {
    addServer(42, 3000);
    addServer(43, 5173, "npm run dev");
    world.machine.listen(43, 5174);
    start();
    store->saveStack(record(3000));
    ASSERT_EQ(store->stacks().size(), 1u);
    EXPECT_EQ(store->stacks()[0].name, "shop");
    EXPECT_EQ(store->stacks()[0].commands.size(), 2u);
    auto service = record(3000);
    service.service = "web.service";
    service.cwd = "/home/me/other";
    store->saveStack(service);
    EXPECT_EQ(store->stacks().size(), 1u);
}

} // namespace
} // namespace tarnvale
