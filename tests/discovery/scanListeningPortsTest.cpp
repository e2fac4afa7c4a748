#include "discovery/scanListeningPorts.h"

#include "discovery/isDevPort.h"
#include "support/FakeMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ScanListeningPortsTest : public testing::Test {
protected:
    std::vector<ListeningPort> scan() {
        m_machine.forgetQuestions();
        return scanListeningPorts(m_machine);
    }

    /// The only record of a scan.
    ListeningPort scanOne() {
        const auto ports = scan();
        EXPECT_EQ(ports.size(), 1u);
        return ports.empty() ? ListeningPort() : ports.front();
    }

    void addServer(FakeProcess process, std::int64_t port) {
        const Pid pid = process.pid;
        m_machine.add(std::move(process));
        m_machine.listen(pid, port);
    }

    /// `php -S` (pid 20) under `php artisan serve` (pid 10), which the shell 5 runs.
    void addArtisan() {
        m_machine.add({.pid = 5, .path = "/bin/zsh", .args = "-zsh"});
        m_machine.add({.pid = 10,
                       .ppid = 5,
                       .path = "/opt/php",
                       .args = "php artisan serve",
                       .cwd = "/Users/me/blog",
                       .cpu = 1,
                       .memoryKB = 100});
        m_machine.tick(10s);
        addServer({.pid = 20,
                   .ppid = 10,
                   .path = "/opt/php",
                   .args = "php -S 127.0.0.1:8000",
                   .cwd = "/Users/me/blog/public",
                   .cpu = 7,
                   .memoryKB = 700},
                  8000);
        m_machine.tick(20s);
    }

    FakeMachine m_machine;
};

TEST_F(ScanListeningPortsTest, withoutSocketsNothingElseIsAsked) {
    m_machine.add({.pid = 42, .path = "/usr/bin/node"});
    EXPECT_THAT(scan(), IsEmpty());
    EXPECT_THAT(m_machine.questions(), ElementsAre("listeningSockets"));
}

TEST_F(ScanListeningPortsTest, theQuestionsComeInTheirOrder) {
    addArtisan();
    addServer({.pid = 30, .path = "com.docker.backend"}, 8080);
    static_cast<void>(scan());
    EXPECT_THAT(m_machine.questions(),
                ElementsAre("listeningSockets", "processDetails 20 30", "processDetails 10",
                            "workingDirectories 10 20 30", "serviceLabels 10 20 30", "containers 8080", "now",
                            "processTable 10 30", "hostApplication 5"));
}

TEST_F(ScanListeningPortsTest, aRecordIsFilledFromEveryAnswer) {
    m_machine.add({.pid = 5, .path = "/Applications/Terminal.app/Contents/MacOS/Terminal"});
    m_machine.add({.pid = 6, .ppid = 5, .path = "/opt/bin/claude"});
    addServer({.pid = 42,
               .ppid = 6,
               .path = "/usr/bin/node",
               .args = "node server.js",
               .cwd = "/Users/me/my shop",
               .cpu = 12.5,
               .memoryKB = 98304},
              3000);
    const Instant start = m_machine.now();
    m_machine.tick(90s);
    EXPECT_EQ(scanOne(), (ListeningPort{.pid = 42,
                                        .command = "node",
                                        .port = 3000,
                                        .cwd = "/Users/me/my shop",
                                        .startedAt = start,
                                        .args = "node server.js",
                                        .cpu = 12.5,
                                        .memoryKB = 98304,
                                        .hostApp = "/Applications/Terminal.app",
                                        .agent = "Claude Code"}));
}

TEST_F(ScanListeningPortsTest, anUnchangedMachineGivesAnEqualList) {
    addArtisan();
    const auto first = scan();
    m_machine.tick(2s);
    EXPECT_EQ(scan(), first);
}

TEST_F(ScanListeningPortsTest, aStartIsCountedBackWhereOnlyTheAgeIsTold) {
    m_machine.tellsStart = false;
    addServer({.pid = 42, .path = "node"}, 3000);
    const Instant start = m_machine.now();
    m_machine.tick(90s);
    EXPECT_EQ(scanOne().startedAt, start);
    EXPECT_EQ(std::ranges::count(m_machine.questions(), "now"), 1) << "one clock for all";
}

TEST_F(ScanListeningPortsTest, anUnreadableProcessLeavesHoles) {
    addServer({.pid = 42, .ppid = 7, .path = "node", .args = "node", .cwd = "/x", .isReadable = false}, 3000);
    m_machine.services[7] = {"com.example.agent", ServiceManager::launchd};
    EXPECT_EQ(scanOne(), (ListeningPort{.pid = 42, .command = "node", .port = 3000}))
        << "the parent is unknown too, and so is its service";
}

TEST_F(ScanListeningPortsTest, aProcessThatEndsDuringTheScanLeavesHoles) {
    m_machine.sockets.push_back({.pid = 42, .port = 3000, .isExposed = false, .command = "node"});
    EXPECT_EQ(scanOne(), (ListeningPort{.pid = 42, .command = "node", .port = 3000}));
}

TEST_F(ScanListeningPortsTest, theFirstProcessesAreNeverAskedAsParents) {
    addServer({.pid = 42, .ppid = 1, .path = "python"}, 3000);
    addServer({.pid = 43, .ppid = 0, .path = "ruby"}, 3001);
    static_cast<void>(scan());
    EXPECT_THAT(m_machine.questions(),
                ElementsAre("listeningSockets", "processDetails 42 43", "workingDirectories 42 43",
                            "serviceLabels 42 43", "now", "processTable 42 43"));
}

TEST_F(ScanListeningPortsTest, aServiceIsThatOfTheProcessElseOfItsParent) {
    addServer({.pid = 42, .ppid = 7, .path = "node"}, 3000);
    m_machine.services[7] = {"parent.job", ServiceManager::launchd};
    EXPECT_EQ(scanOne().service, "parent.job");
    m_machine.services[42] = {"own.service", ServiceManager::systemdUser};
    EXPECT_EQ(scanOne().service, "own.service");
    EXPECT_EQ(scanOne().serviceManager, ServiceManager::systemdUser);
}

TEST_F(ScanListeningPortsTest, aGrandchildOfAJobIsNoService) {
    m_machine.add({.pid = 6, .ppid = 5});
    addServer({.pid = 42, .ppid = 6, .path = "node"}, 3000);
    m_machine.services[5] = {"com.example.agent", ServiceManager::launchd};
    EXPECT_EQ(scanOne().service, std::nullopt);
}

TEST_F(ScanListeningPortsTest, aHomebrewServiceShowsThoughItWorksInTheRoot) {
    addServer({.pid = 42, .path = "thing", .cwd = "/"}, 3000);
    EXPECT_FALSE(isDevPort(scanOne()));
    m_machine.services[42] = {"homebrew.mxcl.thing", ServiceManager::launchd};
    EXPECT_TRUE(isDevPort(scanOne()));
}

TEST_F(ScanListeningPortsTest, containersAreAskedOnlyForProxies) {
    m_machine.publishedPorts = {{3000, "web · nginx"}};
    addServer({.pid = 42, .path = "node"}, 3000);
    EXPECT_EQ(scanOne().container, std::nullopt) << "a port that is no proxy's never has a container";
    EXPECT_THAT(m_machine.questions(), Each(Not(StartsWith("containers"))));
}

TEST_F(ScanListeningPortsTest, everyProxyTakesTheContainerOfItsPort) {
    m_machine.publishedPorts = {{8080, "web · nginx:1.25"}, {3000, "other · x"}};
    addServer({.pid = 42, .path = "node"}, 3000);
    m_machine.add({.pid = 50, .path = "docker-proxy"});
    m_machine.listen(50, 8080);
    m_machine.listen(50, 8081);
    const auto ports = scan();
    ASSERT_EQ(ports.size(), 3u);
    EXPECT_EQ(ports[0].container, std::nullopt);
    EXPECT_EQ(ports[1].container, "web · nginx:1.25");
    EXPECT_EQ(ports[2].container, std::nullopt);
    EXPECT_TRUE(ports[2].isDockerProxy());
    EXPECT_THAT(m_machine.questions(), Contains("containers 8080 8081"));
}

TEST_F(ScanListeningPortsTest, aWorkerOfArtisanIsShownAsItsParent) {
    addArtisan();
    m_machine.services[20] = {"com.example.worker", ServiceManager::launchd};
    const ListeningPort port = scanOne();
    EXPECT_EQ(port, (ListeningPort{.pid = 10,
                                   .command = "php",
                                   .port = 8000,
                                   .cwd = "/Users/me/blog",
                                   .startedAt = m_machine.now() - 30s,
                                   .args = "php artisan serve",
                                   .service = "com.example.worker",
                                   .cpu = 7.0,
                                   .memoryKB = 700,
                                   .workerPID = 20}));
    EXPECT_EQ(port.displayName(), "Laravel");
}

TEST_F(ScanListeningPortsTest, anArtisanWithSeveralWorkersIsAskedForOnce) {
    addArtisan();
    addServer({.pid = 21, .ppid = 10, .path = "/opt/php"}, 8001);
    const auto ports = scan();
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].workerPID, 20);
    EXPECT_EQ(ports[1].workerPID, 21);
    EXPECT_THAT(m_machine.questions(), Contains("workingDirectories 10 20 21"));
}

TEST_F(ScanListeningPortsTest, aWorkerKeepsItsFolderWhenItsParentHasNone) {
    addArtisan();
    m_machine.processes[10].cwd.reset();
    EXPECT_EQ(scanOne().cwd, "/Users/me/blog/public");
}

TEST_F(ScanListeningPortsTest, theWalkUpTheTreeStartsAtTheArtisanParent) {
    addArtisan();
    m_machine.processes[5] = {.pid = 5, .path = "/Applications/Terminal.app/Contents/MacOS/Terminal"};
    m_machine.processes[10].path = "/Applications/Herd.app/php";
    EXPECT_EQ(scanOne().hostApp, "/Applications/Terminal.app")
        << "the parent is its own process now, not a host";
}

TEST_F(ScanListeningPortsTest, theListStaysSortedAfterTheRewrite) {
    // The socket's holder 20 comes after 15, the parent that it is shown as before.
    addArtisan();
    m_machine.add({.pid = 15, .path = "/usr/bin/python"});
    m_machine.listen(15, 8000);
    const auto ports = scan();
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].pid, 10);
    EXPECT_EQ(ports[1].pid, 15);
}

TEST_F(ScanListeningPortsTest, anArtisanThatListensItselfIsNoWorker) {
    addServer({.pid = 42, .ppid = 7, .path = "php", .args = "php artisan serve"}, 8000);
    EXPECT_EQ(scanOne().workerPID, std::nullopt);
}

TEST_F(ScanListeningPortsTest, noiseStaysInTheListButDoesNotShow) {
    addServer({.pid = 42, .path = "node", .args = "node /lib/tsserver.js", .cwd = "/Users/me/shop"}, 3000);
    EXPECT_FALSE(isDevPort(scanOne()));
}

TEST_F(ScanListeningPortsTest, aServiceThatWaitsForItsFirstConnectionKeepsItsName) {
    class WaitingMachine : public FakeMachine {
    public:
        std::vector<ListeningPort> listeningSockets() override {
            return {{.pid = 1,
                     .command = "systemd",
                     .port = 631,
                     .service = "cups.socket",
                     .serviceManager = ServiceManager::systemd}};
        }
    };
    WaitingMachine machine;
    const auto ports = scanListeningPorts(machine);
    ASSERT_EQ(ports.size(), 1u);
    EXPECT_EQ(ports[0].service, "cups.socket");
    EXPECT_EQ(ports[0].serviceManager, ServiceManager::systemd);
}

} // namespace
} // namespace tarnvale
