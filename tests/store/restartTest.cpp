#include "store/StoreTest.h"

#include "support/TestProcess.h"

#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class RestartTest : public StoreTest {
protected:
    RestartTest() { addServer(nobody, 3000); }

    /// No process of this machine has that number, so its arguments can't be read.
    static constexpr Pid nobody = impossiblePid;
};

TEST_F(RestartTest, aPlainProcessIsLaunchedAgainWhenItHasGone) {
    start();
    const auto flow = store->restart(record(3000));
    quiesce();
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{nobody, SIGTERM}));
    ASSERT_EQ(world.launcher.launched.size(), 1u);
    const LaunchOrder &order = world.launcher.launched[0]->order;
    EXPECT_EQ(order.command, "node server.js") << "as listed, since the exact words can't be read";
    EXPECT_EQ(order.folder, "/home/me/shop");
    EXPECT_EQ(order.log, "/nowhere/logs/shop-node-server-js.log");
    EXPECT_EQ(order.environment, std::nullopt);
    EXPECT_FALSE(flow.isReady());
    pass(1s);
    EXPECT_TRUE(flow.isReady());
    EXPECT_EQ(error(), "");
}

TEST_F(RestartTest, itsExactWordsAndVariablesComeBack) {
    const TestProcess real({"/bin/sleep", "60"}, {{"ODD=a 'b'\nc", "PATH=/usr/bin"}});
    addServer(real.pid(), 4000, "sleep 60");
    start();
    finish(store->restart(record(4000)));
    ASSERT_EQ(world.launcher.launched.size(), 1u);
    const LaunchOrder &order = world.launcher.launched[0]->order;
    EXPECT_EQ(order.command, "/bin/sleep 60");
    using Variables = std::map<std::string, std::string>;
    EXPECT_EQ(order.environment, (Variables{{"ODD", "a 'b'\nc"}, {"PATH", "/usr/bin"}}));
    EXPECT_EQ(order.log, "/nowhere/logs/shop-sleep-60.log") << "named by the listed command";
}

TEST_F(RestartTest, aProcessThatStaysIsLeftAlone) {
    world.processes.deaf.insert(nobody);
    start();
    const auto port = record(3000);
    const auto flow = store->restart(port);
    pass(4999ms);
    EXPECT_FALSE(flow.isReady());
    pass(1ms);
    EXPECT_TRUE(flow.isReady());
    EXPECT_EQ(error(), "node (PID " + std::to_string(nobody) + ") didn't stop within 5 seconds.");
    EXPECT_EQ(world.processes.sent.size(), 1u) << "nothing stronger is sent";
    EXPECT_THAT(world.launcher.launched, IsEmpty());
}

TEST_F(RestartTest, itWaitsForTheEndAndForTheWorker) {
    world.processes.deaf.insert(nobody);
    start();
    auto port = record(3000);
    world.machine.add({.pid = 43, .path = "/usr/bin/php", .args = "php -S"});
    port.workerPID = 43;
    const auto flow = store->restart(port);
    pass(2s);
    EXPECT_THAT(world.launcher.launched, IsEmpty());
    world.machine.end(nobody);
    pass(1s);
    EXPECT_THAT(world.launcher.launched, IsEmpty());
    world.machine.end(43);
    pass(100ms);
    EXPECT_EQ(world.launcher.launched.size(), 1u);
}

TEST_F(RestartTest, whatCannotBeRestartedIsNotTouched) {
    start();
    struct Row {
        std::string reason;
        ListeningPort port;
    };
    auto noArgs = record(3000);
    noArgs.args.reset();
    auto noFolder = record(3000);
    noFolder.cwd.reset();
    auto noProject = record(3000);
    noProject.cwd = "/";
    for (const Row &row :
         {Row{"no command", noArgs}, Row{"no folder", noFolder}, Row{"no project", noProject}}) {
        finish(store->restart(row.port));
        EXPECT_THAT(world.processes.sent, IsEmpty()) << row.reason;
        EXPECT_EQ(error(), "") << row.reason;
    }
}

TEST_F(RestartTest, theCheckComesFirst) {
    start();
    auto port = record(3000);
    port.args = "node other.js";
    finish(store->restart(port));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(error(), testing::HasSubstr("now belongs to a different process"));
}

TEST_F(RestartTest, theCommandOfAnotherUserIsNotRun) {
    world.machine.processes[nobody].isForeign = true;
    start();
    finish(store->restart(record(3000)));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(world.launcher.launched, IsEmpty());
    EXPECT_EQ(error(), "shop belongs to another user or to a container and can't be restarted from here.");
}

TEST_F(RestartTest, aLaunchThatFailsIsExplained) {
    world.launcher.refusal = "No such file or directory";
    start();
    const auto flow = store->restart(record(3000));
    quiesce();
    EXPECT_TRUE(flow.isReady());
    EXPECT_EQ(error(), "Couldn't start node server.js: No such file or directory");
}

TEST_F(RestartTest, aContainerIsRestartedByItsEngine) {
    world.machine.add({.pid = 60, .path = "/usr/bin/docker-proxy", .args = "docker-proxy"});
    world.machine.listen(60, 8080);
    world.machine.publishedPorts[8080] = "web · nginx";
    world.tools.installed["docker"] = "/usr/bin/docker";
    world.tools.answers["/usr/bin/docker restart web"] = "web\n";
    start();
    const auto flow = store->restart(record(8080));
    quiesce();
    EXPECT_TRUE(flow.isReady()) << "a scan at once";
    ASSERT_EQ(world.tools.runs().size(), 1u);
    EXPECT_EQ(world.tools.runs()[0].timeout, 60s);
    EXPECT_EQ(error(), "");
}

TEST_F(RestartTest, aServiceIsRestartedByItsManagerEvenAHomebrewOne) {
    world.tools.installed["brew"] = "/opt/homebrew/bin/brew";
    start();
    auto port = record(3000);
    port.service = "homebrew.mxcl.redis";
    port.serviceManager = ServiceManager::launchd;
    const auto flow = store->restart(port);
    pass(1499ms);
    EXPECT_FALSE(flow.isReady());
    pass(1ms);
    EXPECT_TRUE(flow.isReady());
    ASSERT_EQ(world.tools.runs().size(), 1u);
    EXPECT_THAT(world.tools.runs()[0].arguments,
                ElementsAre("kickstart", "-k", "gui/" + std::to_string(getuid()) + "/homebrew.mxcl.redis"));
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(RestartTest, relaunchStartsTheCommandAgain) {
    start();
    const auto flow = store->relaunch("npm run dev", "/home/me/shop");
    EXPECT_THAT(world.launcher.commands(), ElementsAre("npm run dev"));
    EXPECT_EQ(world.launcher.launched[0]->order.environment, std::nullopt);
    pass(1499ms);
    EXPECT_FALSE(flow.isReady());
    pass(1ms);
    EXPECT_TRUE(flow.isReady());
}

TEST_F(RestartTest, killAndRetryEndsTheHolderFirst) {
    start();
    finish(store->killAndRetry(3000, "npm run dev", "/home/me/shop"));
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{nobody, SIGTERM}));
    EXPECT_THAT(world.launcher.commands(), ElementsAre("npm run dev"));
    EXPECT_EQ(error(), "");
}

TEST_F(RestartTest, killAndRetryGivesUpWhenTheHolderStays) {
    world.processes.refusals[nobody] = EPERM;
    start();
    finish(store->killAndRetry(3000, "npm run dev", "/home/me/shop"));
    EXPECT_THAT(world.launcher.commands(), IsEmpty());
    EXPECT_EQ(error(), "Port 3000 is still in use — npm run dev wasn't started.");
}

TEST_F(RestartTest, killAndRetryWithoutAHolderLaunches) {
    start();
    finish(store->killAndRetry(9999, "npm run dev", "/home/me/shop"));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(world.launcher.commands(), ElementsAre("npm run dev"));
}

TEST_F(RestartTest, aStoreMayGoInTheMiddleOfARestart) {
    world.processes.deaf.insert(nobody);
    start();
    const auto one = store->restart(record(3000));
    const auto two = store->relaunch("a", "/x");
    const auto three = store->killAndRetry(3000, "b", "/x");
    quiesce();
    store.reset();
    world.clock.wakeAll();
    EXPECT_TRUE(one.isReady());
    EXPECT_TRUE(two.isReady());
    EXPECT_TRUE(three.isReady());
    EXPECT_THAT(world.launcher.commands(), ElementsAre("a"))
        << "nothing is launched after the store has gone";
}

} // namespace
} // namespace tarnvale
