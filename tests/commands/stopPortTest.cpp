// `tarnctl kill`. Whatever might be signalled here is a process that the test started itself.

#include "commands/CommandLineFixture.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

bool wasTerminated(TestProcess &process) {
    const auto status = process.waitForEnd();
    return status && WIFSIGNALED(*status) && WTERMSIG(*status) == SIGTERM;
}

class StopPortTest : public CommandLineTest {
protected:
    /// A server on `port` with the pid of `process`.
    FakeProcess &addServer(const TestProcess &process, std::int64_t port,
                           const std::string &command = "node") {
        return addServer(process.pid(), port, command);
    }

    FakeProcess &addServer(Pid pid, std::int64_t port, const std::string &command = "node") {
        m_machine.add({.pid = pid, .path = command, .args = command + " server", .cwd = "/Users/me/shop"});
        m_machine.listen(pid, port);
        return m_machine.processes[pid];
    }

    /// Stops port 3000, which a service keeps, and gives what is printed.
    std::string refusal(const ServiceLabel &service) {
        const TestProcess process(TestProcess::sleeper());
        addServer(process, 3000);
        m_machine.services[process.pid()] = service;
        EXPECT_EQ(run({"kill", "3000"}), 1);
        EXPECT_EQ(m_error, "");
        EXPECT_TRUE(process.isRunning());
        m_machine.end(process.pid());
        return m_output;
    }

    /// The same for the port of a container runtime.
    std::string proxyRefusal(const std::optional<std::string> &container) {
        const TestProcess process(TestProcess::sleeper());
        addServer(process, 3000, "docker-proxy");
        if (container)
            m_machine.publishedPorts[3000] = *container;
        EXPECT_EQ(run({"kill", "3000"}), 1);
        EXPECT_EQ(m_error, "");
        EXPECT_TRUE(process.isRunning());
        m_machine.end(process.pid());
        return m_output;
    }
};

TEST_F(StopPortTest, aPortThatNobodyHoldsIsTold) {
    const TestProcess process(TestProcess::sleeper());
    addServer(process, 3001);
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_EQ(m_error, "Nothing is listening on :3000.\n");
    EXPECT_EQ(m_output, "");
    EXPECT_TRUE(process.isRunning());
}

TEST_F(StopPortTest, aPlainProcessIsTerminated) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000);
    EXPECT_EQ(run({"kill", "3000"}), 0);
    EXPECT_EQ(m_output, "Stopped node (PID " + std::to_string(process.pid()) + ") on :3000.\n");
    EXPECT_EQ(m_error, "");
    EXPECT_TRUE(wasTerminated(process));
    EXPECT_THAT(m_naps, IsEmpty());
}

TEST_F(StopPortTest, aProcessThatNormallyIsHiddenIsStoppedToo) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000, "gopls").cwd = "/";
    EXPECT_EQ(run({"kill", "3000"}), 0);
    EXPECT_TRUE(wasTerminated(process));
}

TEST_F(StopPortTest, theEndIsNotWaitedFor) {
    const TemporaryFolder folder;
    const std::string ready = folder.path("ready");
    const TestProcess process({"/bin/sh", "-c", "trap '' TERM; : > " + ready + "; read line"});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(ready); }));
    addServer(process, 3000);
    EXPECT_EQ(run({"kill", "3000"}), 0);
    EXPECT_EQ(m_output, "Stopped node (PID " + std::to_string(process.pid()) + ") on :3000.\n");
    EXPECT_TRUE(process.isRunning());
}

TEST_F(StopPortTest, servicesAreRefusedWithTheirManagersAdvice) {
    struct Row {
        ServiceLabel service;
        std::string sentence;
    };
    const std::array rows{
        Row{{"com.example.agent", ServiceManager::launchd},
            "launchd service \u2014 stop it with: launchctl bootout gui/501/com.example.agent"},
        Row{{"homebrew.mxcl.redis@7", ServiceManager::launchd},
            "launchd service \u2014 stop it with: brew services stop redis@7"},
        Row{{"sh.brew.redis", ServiceManager::launchd},
            "launchd service \u2014 stop it with: brew services stop redis"},
        Row{{"nginx.service", ServiceManager::systemd},
            "systemd service \u2014 stop it with: sudo systemctl stop nginx.service"},
        Row{{"app@1.service", ServiceManager::systemdUser},
            "systemd service \u2014 stop it with: systemctl --user stop app@1.service"},
        Row{{"homebrew.redis.service", ServiceManager::systemdUser},
            "systemd service \u2014 stop it with: brew services stop redis"},
        Row{{"homebrew.redis.service", ServiceManager::systemd},
            "systemd service \u2014 stop it with: brew services stop redis"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(refusal(row.service), "node on :3000 is a " + row.sentence + "\n");
}

TEST_F(StopPortTest, aChildOfAServiceIsRefusedToo) {
    const TestProcess process(TestProcess::sleeper());
    addServer(process, 3000).ppid = 7;
    m_machine.services[7] = {"com.example.agent", ServiceManager::launchd};
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_TRUE(process.isRunning());
}

TEST_F(StopPortTest, aContainersPortIsRefused) {
    EXPECT_EQ(
        proxyRefusal("web \u00B7 nginx:1.25"),
        "docker-proxy on :3000 is Docker's port proxy \u2014 stop the container with: docker stop web\n");
}

TEST_F(StopPortTest, aProxyWithoutANamedContainerIsRefusedWithGenericAdvice) {
    const std::string sentence =
        "docker-proxy on :3000 is Docker's port proxy \u2014 stop the container with: "
        "docker ps, then docker stop <container>\n";
    EXPECT_EQ(proxyRefusal(" \u00B7 nginx"), sentence);
    m_machine.publishedPorts.clear();
    EXPECT_EQ(proxyRefusal(std::nullopt), sentence);
}

TEST_F(StopPortTest, aServiceIsToldBeforeAContainer) {
    const TestProcess process(TestProcess::sleeper());
    addServer(process, 3000, "docker-proxy");
    m_machine.publishedPorts[3000] = "web \u00B7 nginx";
    m_machine.services[process.pid()] = {"docker.service", ServiceManager::systemd};
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_EQ(m_output, "docker-proxy on :3000 is a systemd service \u2014 stop it with: sudo systemctl stop "
                        "docker.service\n");
}

TEST_F(StopPortTest, artisanIsStoppedBeforeItsWorker) {
    TestProcess parent(TestProcess::sleeper());
    TestProcess worker(TestProcess::sleeper());
    addServer(worker, 8000, "php").ppid = parent.pid();
    m_machine.add({.pid = parent.pid(), .path = "php", .args = "php artisan serve"});
    bool isParentGone = false;
    bool isWorkerThere = false;
    m_whileSleeping = [&] {
        isParentGone = wasTerminated(parent);
        isWorkerThere = worker.isRunning();
    };
    EXPECT_EQ(run({"kill", "8000"}), 0);
    EXPECT_EQ(m_output, "Stopped php (PID " + std::to_string(parent.pid()) + ") on :8000.\n");
    EXPECT_THAT(m_naps, ElementsAre(500ms));
    EXPECT_TRUE(isParentGone);
    EXPECT_TRUE(isWorkerThere);
    EXPECT_TRUE(wasTerminated(worker));
}

TEST_F(StopPortTest, aWorkerThatWentWithItsParentIsNoFailure) {
    TestProcess parent(TestProcess::sleeper());
    TestProcess worker({"/bin/cat"});
    addServer(worker, 8000, "php").ppid = parent.pid();
    m_machine.add({.pid = parent.pid(), .path = "php", .args = "php artisan serve"});
    m_whileSleeping = [&] {
        worker.becomeZombie();
        EXPECT_TRUE(worker.waitForEnd());
    };
    EXPECT_EQ(run({"kill", "8000"}), 0);
    EXPECT_EQ(m_error, "");
    EXPECT_TRUE(wasTerminated(parent));
}

TEST_F(StopPortTest, aWorkerStaysWhenItsParentCannotBeStopped) {
    const TestProcess worker(TestProcess::sleeper());
    addServer(worker, 8000, "php").ppid = impossiblePid;
    m_machine.add({.pid = impossiblePid, .path = "php", .args = "php artisan serve"});
    EXPECT_EQ(run({"kill", "8000"}), 1);
    EXPECT_EQ(m_error, "Couldn't stop php (PID 2147483647): No such process.\n");
    EXPECT_TRUE(worker.isRunning());
    EXPECT_THAT(m_naps, IsEmpty());
}

TEST_F(StopPortTest, everyRecordOfThePortIsTreated) {
    TestProcess first(TestProcess::sleeper());
    TestProcess second(TestProcess::sleeper());
    TestProcess elsewhere(TestProcess::sleeper());
    addServer(first, 3000, "node");
    addServer(second, 3000, "ruby");
    addServer(elsewhere, 3001, "node");
    EXPECT_EQ(run({"kill", "3000"}), 0);
    EXPECT_TRUE(wasTerminated(first));
    EXPECT_TRUE(wasTerminated(second));
    EXPECT_TRUE(elsewhere.isRunning());
    EXPECT_EQ(std::count(m_output.begin(), m_output.end(), '\n'), 2);
}

TEST_F(StopPortTest, aRefusalDoesNotKeepAPlainProcess) {
    // In both orders, since the status must stay 1 whatever comes last.
    for (const bool isServiceFirst : {false, true}) {
        TestProcess a(TestProcess::sleeper());
        TestProcess b(TestProcess::sleeper());
        TestProcess &lower = a.pid() < b.pid() ? a : b;
        TestProcess &higher = a.pid() < b.pid() ? b : a;
        TestProcess &service = isServiceFirst ? lower : higher;
        TestProcess &plain = isServiceFirst ? higher : lower;
        addServer(service, 3000, "nginx");
        addServer(plain, 3000, "ruby");
        m_machine.services = {{service.pid(), {"nginx.service", ServiceManager::systemd}}};
        const std::string refused =
            "nginx on :3000 is a systemd service \u2014 stop it with: sudo systemctl stop nginx.service\n";
        const std::string stopped = "Stopped ruby (PID " + std::to_string(plain.pid()) + ") on :3000.\n";
        EXPECT_EQ(run({"kill", "3000"}), 1);
        EXPECT_EQ(m_output, isServiceFirst ? refused + stopped : stopped + refused);
        EXPECT_TRUE(wasTerminated(plain));
        EXPECT_TRUE(service.isRunning());
        m_machine.end(a.pid());
        m_machine.end(b.pid());
    }
}

TEST_F(StopPortTest, aFailureDoesNotKeepTheNextProcess) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000, "ruby");
    addServer(impossiblePid, 3000, "node");
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_EQ(m_error, "Couldn't stop node (PID 2147483647): No such process.\n");
    EXPECT_EQ(m_output, "Stopped ruby (PID " + std::to_string(process.pid()) + ") on :3000.\n");
    EXPECT_TRUE(wasTerminated(process));
}

TEST_F(StopPortTest, ourselvesWeNeverStop) {
    addServer(getpid(), 3000, "tarnctl");
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_EQ(m_error,
              "Couldn't stop tarnctl (PID " + std::to_string(getpid()) + "): Operation not permitted.\n");
}

TEST_F(StopPortTest, anotherUsersProcessCannotBeStopped) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user to signal from";
    const TestProcess process(TestProcess::sleeper());
    addServer(process, 3000);
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(setresuid(nobody, nobody, 0), 0);
    const auto status = run({"kill", "3000"});
    ASSERT_EQ(setresuid(0, 0, 0), 0);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(m_error,
              "Couldn't stop node (PID " + std::to_string(process.pid()) + "): Operation not permitted.\n");
    EXPECT_EQ(m_output, "");
    EXPECT_TRUE(process.isRunning());
}

/// A machine on which the pid passes to another process after the scan.
class SwappingMachine : public FakeMachine {
public:
    ProcessDetailsMap currentDetails(const std::vector<Pid> &pids) override {
        ProcessDetailsMap details = FakeMachine::currentDetails(pids);
        for (auto &[pid, process] : details)
            process.args = "something else";
        return details;
    }
};

TEST_F(StopPortTest, aPidThatPassedToAnotherProcessIsNotSignalled) {
    const TestProcess process(TestProcess::sleeper());
    SwappingMachine machine;
    machine.add({.pid = process.pid(), .path = "node", .args = "node server"});
    machine.listen(process.pid(), 3000);
    CommandLineWorld swapping = world();
    swapping.machine = [&]() -> Machine & { return machine; };
    EXPECT_EQ(runCommandLine({"tarnctl", "kill", "3000"}, swapping), 1);
    EXPECT_EQ(m_error, "Couldn't stop node (PID " + std::to_string(process.pid()) + "): No such process.\n");
    EXPECT_TRUE(process.isRunning());
}

TEST_F(StopPortTest, aProcessThatCannotBeReadIsStoppedAllTheSame) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000).isReadable = false;
    EXPECT_EQ(run({"kill", "3000"}), 0);
    EXPECT_TRUE(wasTerminated(process));
}

TEST_F(StopPortTest, controlCharactersNeverReachTheTerminal) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000, "no\x1B[2Jde");
    addServer(impossiblePid, 3000, "ru\nby");
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_EQ(m_output, "Stopped no\uFFFD[2Jde (PID " + std::to_string(process.pid()) + ") on :3000.\n");
    EXPECT_EQ(m_error, "Couldn't stop ru\uFFFDby (PID 2147483647): No such process.\n");
    m_machine.end(process.pid());
    m_machine.end(impossiblePid);
    EXPECT_EQ(proxyRefusal("we\x1B"
                           "b \u00B7 nginx"),
              "docker-proxy on :3000 is Docker's port proxy \u2014 stop the container with: docker stop "
              "we\uFFFDb\n");
}

TEST_F(StopPortTest, anOutputThatTakesNothingMakesItFail) {
    TestProcess process(TestProcess::sleeper());
    addServer(process, 3000);
    m_isOutputFull = true;
    EXPECT_EQ(run({"kill", "3000"}), 1);
    EXPECT_TRUE(wasTerminated(process));
}

} // namespace
} // namespace tarnvale
