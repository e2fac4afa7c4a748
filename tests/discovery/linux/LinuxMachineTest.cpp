#include "discovery/linux/LinuxMachine.h"

#include "discovery/linux/ForkedChild.h"
#include "discovery/scanListeningPorts.h"
#include "support/FakeProc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

class LinuxMachineTest : public testing::Test {
protected:
    LinuxMachineTest() { proc.listen("0100007F:1F90", 31337); }

    std::vector<ListeningPort> scan() { return scanListeningPorts(machine); }

    FakeProcess server{.pid = 42,
                       .ppid = 30,
                       .comm = "node",
                       .userTime = 500,
                       .startTime = 90'000,
                       .words = {"node", "server.js"},
                       .cwd = "/srv/web",
                       .executable = "/usr/bin/node",
                       .sockets = {{3, 31337}}};
    FakeProc proc;
    LinuxMachine machine{proc.sources()};
};

TEST_F(LinuxMachineTest, aServerIsDescribedWhole) {
    proc.add(server);
    const auto ports = scan();
    ASSERT_THAT(ports, SizeIs(1));
    const ListeningPort &port = ports.front();
    EXPECT_EQ(port.pid, 42);
    EXPECT_EQ(port.command, "node");
    EXPECT_EQ(port.port, 8080);
    EXPECT_FALSE(port.isExposed);
    EXPECT_EQ(port.cwd, "/srv/web");
    EXPECT_EQ(port.args, "node server.js");
    EXPECT_EQ(port.startedAt, proc.clock - 100s);
    EXPECT_NEAR(port.cpu.value_or(-1), 5.0, 1e-9);
    EXPECT_EQ(port.memoryKB, 256 * sysconf(_SC_PAGESIZE) / 1024);
    EXPECT_EQ(port.service, std::nullopt);
    EXPECT_EQ(port.hostApp, std::nullopt);
    EXPECT_EQ(port.container, std::nullopt);
}

TEST_F(LinuxMachineTest, anUnchangedMachineGivesAnEqualList) {
    proc.add(server);
    static_cast<void>(scan());
    proc.pass(2s);
    const auto first = scan();
    for (int i = 0; i < 20; ++i) {
        proc.pass(2s);
        EXPECT_EQ(scan(), first);
    }
}

TEST_F(LinuxMachineTest, bothFamiliesAndAllWorkersAreOneRecord) {
    proc.listen("00000000000000000000000000000000:1F90", 31338);
    server.sockets[4] = 31338;
    server.pid = 44;
    proc.add(server);
    for (const Pid worker : {43, 42}) {
        server.pid = worker;
        server.ppid = 44;
        proc.add(server);
    }
    const auto ports = scan();
    ASSERT_THAT(ports, SizeIs(1));
    EXPECT_EQ(ports.front().pid, 42) << "the lowest";
    EXPECT_TRUE(ports.front().isExposed) << "the second socket is bound to every address";
    proc.remove(42);
    proc.pass(2s);
    ASSERT_THAT(scan(), SizeIs(1));
    EXPECT_EQ(scan().front().pid, 43) << "the others keep the port";
}

TEST_F(LinuxMachineTest, differentProgramsOnOnePortAreRecordsOfTheirOwn) {
    proc.add(server);
    proc.add({.pid = 50, .comm = "ruby", .sockets = {{3, 31339}}});
    proc.listen("00000000:1F90", 31339);
    const auto ports = scan();
    ASSERT_THAT(ports, SizeIs(2));
    EXPECT_EQ(ports[0].command, "node");
    EXPECT_FALSE(ports[0].isExposed);
    EXPECT_EQ(ports[1].command, "ruby");
    EXPECT_TRUE(ports[1].isExposed);
}

TEST_F(LinuxMachineTest, socketsWithoutAnOwnerAreLeftOut) {
    proc.listen("00000000:0801", 0); // the kernel's own
    proc.listen("00000000:0050", 555);
    EXPECT_THAT(scan(), IsEmpty());
    proc.add(server);
    EXPECT_THAT(scan(), SizeIs(1));
}

TEST_F(LinuxMachineTest, aPortThatIsClosedIsGoneInTheNextScan) {
    proc.add(server);
    ASSERT_THAT(scan(), SizeIs(1));
    proc.unlisten(31337);
    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(LinuxMachineTest, aProcessThatTookOverThePidIsTheOneDescribed) {
    proc.add(server);
    const auto before = scan();
    proc.remove(42);
    server.startTime = 99'000;
    server.words = {"node", "other.js"};
    proc.add(server);
    const auto after = scan();
    ASSERT_THAT(after, SizeIs(1));
    EXPECT_EQ(after.front().args, "node other.js");
    EXPECT_EQ(after.front().startedAt, proc.clock - 10s);
}

TEST_F(LinuxMachineTest, answersBelongToTheScan) {
    proc.add(server);
    ASSERT_THAT(machine.listeningSockets(), SizeIs(1));
    ASSERT_EQ(machine.processDetails({42}).at(42).args, "node server.js");
    server.words = {"node", "other.js"};
    server.userTime += 100;
    proc.change(server);
    EXPECT_EQ(machine.processDetails({42}).at(42).args, "node server.js");
    EXPECT_EQ(machine.currentDetails({42}).at(42).args, "node other.js") << "except where the moment counts";
    proc.remove(42);
    EXPECT_THAT(machine.currentDetails({42}), IsEmpty());
    EXPECT_THAT(machine.processDetails({0, -1, 4711}), IsEmpty());
}

TEST_F(LinuxMachineTest, aMachineCanBeAskedBeforeItsFirstScan) {
    proc.add(server);
    EXPECT_EQ(machine.currentDetails({42}).at(42).args, "node server.js");
    EXPECT_EQ(machine.currentDetails({42}).at(42).startedAt, proc.clock - 100s);
    EXPECT_THAT(machine.processTable({42}), SizeIs(1));
}

TEST_F(LinuxMachineTest, theProcessorIsMeasuredBetweenScans) {
    proc.add(server);
    static_cast<void>(scan());
    proc.pass(2s);
    server.userTime += 100;
    proc.change(server);
    EXPECT_NEAR(scan().front().cpu.value_or(-1), 50.0, 1e-9);
    EXPECT_NEAR(machine.currentDetails({42}).at(42).cpu, 600.0 / 102, 1e-9) << "here the average of its life";
}

TEST_F(LinuxMachineTest, startTimesStayWhenTheClockDrifts) {
    proc.add(server);
    const auto start = scan().front().startedAt;
    for (int i = 0; i < 20; ++i) {
        proc.pass(2s);
        proc.clock += i % 2 == 0 ? 90ms : -40ms;
        EXPECT_EQ(scan().front().startedAt, start);
    }
}

TEST_F(LinuxMachineTest, startTimesFollowWhenTheClockIsSet) {
    proc.add(server);
    const auto start = scan().front().startedAt;
    for (const auto step : {1h, -2h}) {
        proc.clock += step;
        proc.pass(2s);
        EXPECT_EQ(scan().front().startedAt, proc.clock - 100s - (proc.uptime - 1000s));
    }
    EXPECT_EQ(scan().front().startedAt, *start - 1h);
}

TEST_F(LinuxMachineTest, aMachineWithoutIPv6HasNoSuchTable) {
    proc.removeIPv6Table();
    proc.add(server);
    EXPECT_THAT(scan(), SizeIs(1));
}

TEST_F(LinuxMachineTest, withoutAProcessFileSystemNothingIsFound) {
    LinuxSources sources = proc.sources();
    sources.procFolder = "/nonexistent";
    LinuxMachine blind(sources);
    EXPECT_THAT(scanListeningPorts(blind), IsEmpty());
    EXPECT_THAT(blind.currentDetails({1}), IsEmpty());
}

TEST_F(LinuxMachineTest, theNextScanAfterNothingNewLooksThroughNobody) {
    for (Pid pid = 1000; pid < 1060; ++pid)
        proc.add({.pid = pid, .sockets = {{0, 7}}});
    proc.add(server);
    static_cast<void>(scan());
    const auto cold = machine.walkCount();
    EXPECT_EQ(cold, 62u);
    static_cast<void>(scan());
    EXPECT_LE(machine.walkCount() - cold, 2u) << "only the audit's share";
}

/// A docker proxy whose descriptors may be seen, on port 8080.
class ContainersTest : public LinuxMachineTest {
protected:
    ContainersTest() {
        server.comm = "docker-proxy";
        server.words = {
            "/usr/bin/docker-proxy", "-proto", "tcp", "-host-ip", "127.0.0.1", "-host-port", "8080"};
        proc.containers = {{8080, "web · nginx:1.25"}};
    }
};

TEST_F(ContainersTest, dockerIsAskedOnceWhileItsProxiesStay) {
    proc.add(server);
    EXPECT_EQ(scan().front().container, "web · nginx:1.25");
    for (int i = 0; i < 29; ++i) {
        proc.pass(2s);
        EXPECT_EQ(scan().front().container, "web · nginx:1.25");
    }
    EXPECT_EQ(proc.dockerCalls, 1);
    proc.pass(2s);
    static_cast<void>(scan());
    EXPECT_EQ(proc.dockerCalls, 2) << "after a minute";
}

TEST_F(ContainersTest, dockerIsAskedAgainWhenAProxyChanges) {
    proc.add(server);
    static_cast<void>(scan());
    FakeProcess second = server;
    second.pid = 43;
    second.sockets = {{3, 31339}};
    proc.add(second);
    proc.listen("0100007F:1F91", 31339);
    proc.containers[8081] = "api · api:2";
    EXPECT_THAT(scan(), SizeIs(2));
    EXPECT_EQ(proc.dockerCalls, 2) << "one more";
    proc.unlisten(31339);
    static_cast<void>(scan());
    EXPECT_EQ(proc.dockerCalls, 3) << "one less";
    proc.remove(42);
    server.startTime = 99'999;
    proc.add(server);
    static_cast<void>(scan());
    EXPECT_EQ(proc.dockerCalls, 4) << "the same pid, another process";
}

TEST_F(ContainersTest, anAnswerWithHolesIsAskedForAgainSoon) {
    proc.containers.clear();
    proc.add(server);
    EXPECT_EQ(scan().front().container, std::nullopt);
    proc.containers = {{8080, "web · nginx:1.25"}};
    proc.pass(9s);
    EXPECT_EQ(scan().front().container, std::nullopt);
    EXPECT_EQ(proc.dockerCalls, 1);
    proc.pass(1s);
    EXPECT_EQ(scan().front().container, "web · nginx:1.25");
    EXPECT_EQ(proc.dockerCalls, 2);
}

TEST_F(ContainersTest, dockerIsNotAskedWithoutAProxy) {
    server.comm = "node";
    proc.add(server);
    static_cast<void>(scan());
    EXPECT_EQ(proc.dockerCalls, 0);
}

TEST_F(ContainersTest, anotherUserSeesTheContainerToo) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root, to become another user";
    proc.add(server);
    ASSERT_EQ(chmod((proc.procFolder() + "/42/fd").c_str(), 0700), 0);
    const auto said = inForkedChild([&]() -> std::string {
        if (!becomeAnotherUser())
            return "still root";
        const auto ports = scan();
        return ports.size() == 1 ? ports.front().id() + " " + ports.front().container.value_or("none")
                                 : "nothing";
    });
    EXPECT_EQ(said, "42:8080 web · nginx:1.25");
}

} // namespace
} // namespace tarnvale
