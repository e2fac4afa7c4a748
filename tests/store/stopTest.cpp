#include "store/StoreTest.h"

#include <cerrno>
#include <csignal>
#include <gmock/gmock.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class StopTest : public StoreTest {
protected:
    StopTest() {
        addServer(42, 3000);
        world.tools.installed["systemctl"] = "/usr/bin/systemctl";
    }

    [[nodiscard]] std::vector<std::string> toolRuns() const {
        std::vector<std::string> lines;
        for (const ToolRun &run : world.tools.runs()) {
            std::string line = run.path;
            for (const std::string &argument : run.arguments)
                line += " " + argument;
            lines.push_back(line);
        }
        return lines;
    }

    /// Publishes port 8080 from a container.
    void addContainer(const std::string &container = "shop-db · postgres:16") {
        world.machine.add(
            {.pid = 60, .path = "/usr/bin/docker-proxy", .args = "docker-proxy -host-port 8080"});
        world.machine.listen(60, 8080);
        world.machine.publishedPorts[8080] = container;
        world.tools.installed["docker"] = "/usr/bin/docker";
    }
};

TEST_F(StopTest, aPlainProcessIsAskedToEnd) {
    start();
    const auto flow = store->stop(record(3000));
    quiesce();
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
    EXPECT_THAT(listed(), ElementsAre(3000)) << "seen by the next scan";
    pass(499ms);
    EXPECT_FALSE(flow.isReady());
    pass(1ms);
    EXPECT_TRUE(flow.isReady());
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_EQ(error(), "");
}

TEST_F(StopTest, aRecordThatTellsTooLittleStopsNothing) {
    start();
    auto noArgs = record(3000);
    noArgs.args.reset();
    auto noStart = record(3000);
    noStart.startedAt.reset();
    for (const auto &port : {noArgs, noStart}) {
        finish(store->stop(port));
        EXPECT_EQ(error(), "Couldn't verify PID 42 is still shop — nothing was stopped.");
    }
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(StopTest, aProcessThatHasGoneIsToldSo) {
    start();
    const auto port = record(3000);
    world.machine.end(42);
    const auto flow = store->stop(port);
    quiesce();
    EXPECT_TRUE(flow.isReady()) << "without a pause";
    EXPECT_EQ(error(), "shop already exited.");
    EXPECT_THAT(listed(), IsEmpty()) << "and the list is new";
}

TEST_F(StopTest, anotherProcessOfThatNumberIsLeftAlone) {
    start();
    struct Row {
        std::string args;
        std::chrono::milliseconds later;
        bool isStopped;
    };
    const std::vector<Row> rows{{"node other.js", 0ms, false},
                                {"node server.js", 3000ms, false},
                                {"node server.js", -3000ms, false},
                                {"node server.js", 2900ms, true}};
    for (const Row &row : rows) {
        world.machine.end(42);
        addServer(42, 3000);
        scan();
        const auto port = record(3000);
        world.machine.processes[42].args = row.args;
        *world.machine.processes[42].startedAt += row.later;
        world.processes.sent.clear();
        finish(store->stop(port));
        EXPECT_EQ(world.processes.sent.size(), row.isStopped ? 1u : 0u) << row.args << row.later.count();
        EXPECT_EQ(error(),
                  row.isStopped ? "" : "PID 42 now belongs to a different process — nothing was stopped.");
    }
}

TEST_F(StopTest, aNumberThatIsReusedDuringTheCheckIsNotSignalled) {
    start();
    const auto port = record(3000);
    // Just before it is checked the process ends, and one like it gets its number.
    world.machine.beforeCurrentDetails = [&] {
        auto twin = world.machine.processes[42];
        *twin.startedAt += 1s;
        world.machine.end(42);
        world.machine.add(twin);
    };
    const auto flow = store->stop(port);
    quiesce();
    EXPECT_TRUE(flow.isReady());
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_EQ(error(), "Couldn't stop node: No such process.");
}

TEST_F(StopTest, aRefusedSignalIsExplainedAndTheListStays) {
    struct Row {
        int problem;
        std::string text;
    };
    for (const Row &row : {Row{EPERM, "No permission to stop node (PID 42)."},
                           Row{ESRCH, "Couldn't stop node: No such process."}}) {
        world.processes.refusals[42] = row.problem;
        start();
        world.machine.forgetQuestions();
        const auto flow = store->stop(record(3000));
        quiesce();
        EXPECT_TRUE(flow.isReady());
        EXPECT_EQ(error(), row.text);
        EXPECT_THAT(world.machine.questions(), ElementsAre("currentDetails 42")) << "no scan follows";
    }
}

TEST_F(StopTest, aWorkerThatEndsByItselfGetsNoSignal) {
    start();
    auto port = record(3000);
    world.machine.add({.pid = 43, .path = "/usr/bin/php", .args = "php -S"});
    port.workerPID = 43;
    const auto flow = store->stop(port);
    pass(1900ms);
    EXPECT_FALSE(flow.isReady());
    world.machine.end(43);
    pass(700ms);
    EXPECT_TRUE(flow.isReady());
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
}

TEST_F(StopTest, aWorkerThatStaysIsAskedOnce) {
    start();
    auto port = record(3000);
    world.machine.add({.pid = 43, .path = "/usr/bin/php", .args = "php -S"});
    world.processes.deaf.insert(43);
    port.workerPID = 43;
    const auto flow = store->stop(port);
    pass(1999ms);
    EXPECT_EQ(world.processes.sent.size(), 1u);
    pass(1ms);
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}, Signal{43, SIGTERM}));
    pass(1999ms);
    EXPECT_FALSE(flow.isReady());
    pass(501ms);
    EXPECT_TRUE(flow.isReady());
    EXPECT_EQ(world.processes.sent.size(), 2u);
    EXPECT_EQ(error(), "");
}

TEST_F(StopTest, aContainerIsStoppedByItsEngine) {
    addContainer();
    world.tools.answers["/usr/bin/docker stop shop-db"] = "shop-db\n";
    start();
    finish(store->stop(record(8080)));
    ASSERT_EQ(world.tools.runs().size(), 1u);
    EXPECT_EQ(world.tools.runs()[0], (ToolRun{.path = "/usr/bin/docker",
                                              .arguments = {"stop", "shop-db"},
                                              .mergesError = true,
                                              .timeout = 30s}));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_EQ(error(), "");
}

TEST_F(StopTest, whatTheEngineSaysElseIsShown) {
    addContainer();
    start();
    struct Row {
        std::string output;
        std::string error;
    };
    const std::vector<Row> rows{
        {"Error response from daemon: No such container: shop-db\n",
         "docker stop: Error response from daemon: No such container: shop-db"},
        {"WARNING: odd\nshop-db\n", "docker stop: WARNING: odd\nshop-db"},
        {"", "docker stop: WARNING: odd\nshop-db"}, // nothing is reported: the old text stays
        {"\nshop-db\n\n", ""},
    };
    for (const Row &row : rows) {
        world.tools.answers["/usr/bin/docker stop shop-db"] = row.output;
        finish(store->stop(record(8080)));
        EXPECT_EQ(error(), row.error) << row.output;
    }
}

TEST_F(StopTest, withoutDockerThatIsSaid) {
    addContainer();
    start();
    const auto port = record(8080);
    world.tools.installed.erase("docker");
    finish(store->stop(port));
    EXPECT_EQ(error(), "Couldn't find the docker command.");
}

TEST_F(StopTest, aContainerRecordIsVerifiedByItsProxy) {
    addContainer();
    start();
    auto port = record(8080);
    port.args.reset();
    finish(store->stop(port));
    EXPECT_EQ(error(), "Couldn't verify PID 60 is still shop-db · postgres:16 — nothing was stopped.");
    EXPECT_THAT(toolRuns(), IsEmpty());
}

TEST_F(StopTest, aServiceIsStoppedByItsManager) {
    start();
    auto port = record(3000);
    port.service = "web.service";
    port.serviceManager = ServiceManager::systemdUser;
    finish(store->stop(port));
    port.serviceManager = ServiceManager::systemd;
    finish(store->stop(port));
    port.service = "com.example.web";
    port.serviceManager = ServiceManager::launchd;
    finish(store->stop(port));
    EXPECT_THAT(toolRuns(),
                ElementsAre(testing::HasSubstr("systemctl --user stop"), testing::HasSubstr("systemctl stop"),
                            "/bin/launchctl bootout gui/" + std::to_string(getuid()) + "/com.example.web"));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_EQ(error(), "");
}

TEST_F(StopTest, aHomebrewServiceIsStoppedByHomebrewWhereThereIsOne) {
    start();
    auto port = record(3000);
    port.service = "homebrew.mxcl.postgresql@16";
    port.serviceManager = ServiceManager::launchd;
    world.tools.installed["brew"] = "/opt/homebrew/bin/brew";
    finish(store->stop(port));
    world.tools.installed.erase("brew");
    finish(store->stop(port));
    EXPECT_THAT(toolRuns(), ElementsAre("/opt/homebrew/bin/brew services stop postgresql@16",
                                        testing::HasSubstr("bootout gui/")));
}

TEST_F(StopTest, aMassStopTakesOnlyPlainProcessesOfDevelopers) {
    addContainer();
    addServer(50, 4000, "node blog.js", "/home/me/blog");
    world.machine.listen(42, 3001);
    world.machine.add({.pid = 51, .path = "/usr/sbin/thing", .args = "thing", .cwd = "/"});
    world.machine.listen(51, 111);
    world.machine.add({.pid = 52, .path = "/usr/sbin/nginx", .args = "nginx", .cwd = "/"});
    world.machine.listen(52, 8000);
    addServer(53, 5000, "node service.js");
    world.machine.services[53] = {"web.service", ServiceManager::systemd};
    addServer(getpid(), 6000, "tarnvale");
    world.machine.add({.pid = 54, .path = "/usr/bin/dockerd", .args = "dockerd", .cwd = "/var/lib/docker"});
    world.machine.listen(54, 2375);
    world.machine.add({.pid = 55, .path = "/usr/share/code/code", .args = "code", .cwd = "/home/me/shop"});
    world.machine.listen(55, 7000);
    start();
    store->setShowAll(true);
    finish(store->stopVisible(store->visiblePorts()));
    std::vector<Pid> stopped;
    for (const Signal &signal : world.processes.sent)
        stopped.push_back(signal.pid);
    EXPECT_THAT(stopped, ElementsAre(42, 50, 55, 52)) << "in the list's order, each process once";
    EXPECT_EQ(error(), "");
}

TEST_F(StopTest, aMassStopNamesWhatItCouldNotStop) {
    addServer(50, 4000, "node blog.js", "/home/me/blog");
    addServer(51, 4001, "node news.js", "/home/me/news");
    world.processes.refusals[42] = EPERM;
    start();
    const auto ports = store->ports();
    world.machine.end(51);
    finish(store->stopVisible(ports));
    EXPECT_EQ(error(), "Couldn't stop shop, news.");
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{50, SIGTERM}));
}

TEST_F(StopTest, aMassStopOfNothingStillScans) {
    start();
    world.machine.forgetQuestions();
    finish(store->stopVisible({}));
    EXPECT_FALSE(world.machine.questions().empty());
}

TEST_F(StopTest, aStoreMayGoInTheMiddleOfAStop) {
    addContainer();
    start();
    auto withWorker = record(3000);
    world.machine.add({.pid = 43, .path = "/usr/bin/php", .args = "php -S"});
    world.processes.deaf.insert(43);
    withWorker.workerPID = 43;
    const auto one = store->stop(withWorker);
    const auto two = store->stop(record(8080));
    const auto three = store->stopVisible(store->ports());
    quiesce();
    store.reset();
    world.clock.wakeAll();
    EXPECT_TRUE(one.isReady());
    EXPECT_TRUE(two.isReady());
    EXPECT_TRUE(three.isReady());
}

} // namespace
} // namespace tarnvale
