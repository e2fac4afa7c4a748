#include "store/ChangeCounter.h"
#include "store/StoreTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class WatchTest : public StoreTest {
protected:
    WatchTest() { addServer(42, 3000); }

    void watch(std::int64_t port) {
        store->toggleWatch(record(port));
        quiesce();
    }

    /// The process goes and the next scan sees it.
    void lose(Pid pid) {
        world.machine.end(pid);
        scan();
    }
};

TEST_F(WatchTest, theButtonsAreDeclared) {
    start();
    const auto category = [](const std::string &id, const std::vector<NotificationAction> &actions) {
        return NotificationCategory{id, actions};
    };
    EXPECT_THAT(world.notifications.categories,
                ElementsAre(category("portConflict",
                                     {{"killAndRetry", "Kill Holder & Retry"}, {"show", "Show in Tarnvale"}}),
                            category("watchedPortStopped", {{"relaunch", "Start Again"}}),
                            category("tunnelReady", {{"openPublicURL", "Open in Browser"}})));
}

TEST_F(WatchTest, watchingIsStored) {
    start();
    watch(3000);
    using Numbers = std::vector<std::int64_t>;
    EXPECT_EQ(std::get<Numbers>(world.settings.values["watchedPorts"]), Numbers{3000});
    EXPECT_EQ(world.notifications.requests, 1);
    watch(3000);
    EXPECT_EQ(std::get<Numbers>(world.settings.values["watchedPorts"]), Numbers{});
    EXPECT_EQ(world.notifications.requests, 1) << "not for letting go";
}

TEST_F(WatchTest, aWatchedPortThatStopsIsTold) {
    start();
    watch(3000);
    lose(42);
    EXPECT_THAT(world.notifications.posted,
                ElementsAre(Notification{
                    .title = "Port 3000 stopped",
                    .body = "shop is no longer listening.",
                    .category = "watchedPortStopped",
                    .payload = NotificationPayload{
                        .port = 3000, .args = "node server.js", .cwd = "/home/me/shop", .url = {}}}));
    EXPECT_THAT(store->downWatchedPorts(), ElementsAre(3000));
    scan();
    EXPECT_THAT(world.notifications.posted, SizeIs(1)) << "once";
}

TEST_F(WatchTest, whatIsNotWatchedIsNotTold) {
    start();
    lose(42);
    EXPECT_THAT(world.notifications.posted, IsEmpty());
}

TEST_F(WatchTest, twoProcessesOnAPortAreOneNotification) {
    world.machine.add({.pid = 43, .path = "/usr/bin/ruby", .args = "ruby", .cwd = "/home/me/shop"});
    world.machine.listen(43, 3000);
    start();
    ASSERT_THAT(store->ports(), SizeIs(2));
    watch(3000);
    lose(42);
    EXPECT_THAT(world.notifications.posted, IsEmpty()) << "the other one still listens";
    addServer(42, 3000);
    scan();
    world.machine.end(42);
    lose(43);
    EXPECT_THAT(world.notifications.posted, SizeIs(1));
}

TEST_F(WatchTest, aPortTakenOverByAnotherProcessHasNotStopped) {
    start();
    watch(3000);
    world.machine.end(42);
    addServer(43, 3000, "ruby app.rb");
    scan();
    EXPECT_THAT(world.notifications.posted, IsEmpty());
}

TEST_F(WatchTest, onlyAPlainProjectCanStartAgain) {
    struct Row {
        std::string reason;
        std::function<void(FakeMachine &)> change;
    };
    const std::vector<Row> rows{
        {"no command line", [](FakeMachine &machine) { machine.processes[42].isReadable = false; }},
        {"no project", [](FakeMachine &machine) { machine.processes[42].cwd = "/"; }},
        {"a service",
         [](FakeMachine &machine) {
             machine.services[42] = {"web.service", ServiceManager::systemd};
         }},
        {"another user's", [](FakeMachine &machine) { machine.processes[42].isForeign = true; }},
        {"a container",
         [](FakeMachine &machine) {
             machine.processes[42].path = "/usr/bin/docker-proxy";
             machine.publishedPorts[3000] = "web · nginx";
         }},
    };
    for (const Row &row : rows) {
        world.machine.services.clear();
        world.machine.publishedPorts.clear();
        world.machine.end(42);
        addServer(42, 3000);
        row.change(world.machine);
        world.settings.values["watchedPorts"] = std::vector<std::int64_t>{3000};
        world.notifications.posted.clear();
        start();
        lose(42);
        ASSERT_THAT(world.notifications.posted, SizeIs(1)) << row.reason;
        EXPECT_EQ(world.notifications.posted[0].category, std::nullopt) << row.reason;
        ASSERT_TRUE(world.notifications.posted[0].payload) << row.reason;
        EXPECT_EQ(world.notifications.posted[0].payload->port, 3000) << row.reason;
    }
}

TEST_F(WatchTest, aPortThatComesBackIsNoLongerDown) {
    start();
    watch(3000);
    lose(42);
    const ChangeCounter down(store.get(), &PortStore::downWatchedPortsChanged);
    addServer(43, 3000);
    scan();
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty());
    EXPECT_EQ(down.count(), 1);
    EXPECT_THAT(world.notifications.posted, SizeIs(1));
}

TEST_F(WatchTest, whoHasLookedKnows) {
    start();
    watch(3000);
    lose(42);
    store->forgetDownWatchedPorts();
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty());
    scan();
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty()) << "staying down brings nothing back";
    EXPECT_THAT(store->watchedPorts(), ElementsAre(3000));
}

TEST_F(WatchTest, lettingGoClearsTheHint) {
    start();
    const auto port = record(3000);
    watch(3000);
    lose(42);
    store->toggleWatch(port);
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty());
}

TEST_F(WatchTest, startAgainLaunchesTheCommand) {
    start();
    watch(3000);
    lose(42);
    world.notifications.onAction("relaunch", *world.notifications.posted[0].payload);
    EXPECT_THAT(world.launcher.commands(), ElementsAre("node server.js"));
    pass(2s);
}

TEST_F(WatchTest, everyActionDoesItsOwn) {
    start();
    int opened = 0;
    store->openWindow = [&] { ++opened; };
    const NotificationPayload whole{
        .port = 3000, .args = "npm run dev", .cwd = "/x", .url = "https://x.ngrok.app"};
    world.notifications.onAction("show", {});
    world.notifications.onAction(defaultNotificationAction, {});
    EXPECT_EQ(opened, 2);
    world.notifications.onAction("openPublicURL", whole);
    EXPECT_THAT(world.desktop.opened, ElementsAre("https://x.ngrok.app"));
    world.notifications.onAction("killAndRetry", whole);
    pass(3s);
    EXPECT_THAT(world.processes.sent, SizeIs(1));
    EXPECT_THAT(world.launcher.commands(), ElementsAre("npm run dev"));
    world.notifications.onAction("somethingElse", whole);
    EXPECT_EQ(opened, 2);
}

TEST_F(WatchTest, anActionThatLacksSomethingDoesNothing) {
    start();
    const NotificationPayload whole{
        .port = 3000, .args = "npm run dev", .cwd = "/x", .url = "https://x.ngrok.app"};
    auto noPort = whole;
    noPort.port.reset();
    auto noArgs = whole;
    noArgs.args.reset();
    auto noFolder = whole;
    noFolder.cwd.reset();
    world.notifications.onAction("killAndRetry", noPort);
    for (const auto &payload : {noArgs, noFolder}) {
        world.notifications.onAction("killAndRetry", payload);
        world.notifications.onAction("relaunch", payload);
    }
    for (const char *url :
         {"http://x.ngrok.app", "HTTPS//x", "javascript:alert(1)", "", "file:///etc/passwd"}) {
        auto other = whole;
        other.url = url;
        world.notifications.onAction("openPublicURL", other);
    }
    auto noUrl = whole;
    noUrl.url.reset();
    world.notifications.onAction("openPublicURL", noUrl);
    pass(3s);
    EXPECT_THAT(world.launcher.commands(), IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_EQ(error(), "");
}

} // namespace
} // namespace tarnvale
