#include "platform/linux/ShellLauncher.h"
#include "real/UserServiceManager.h"
#include "support/ManualClock.h"
#include "support/TestProcess.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A user manager, and commands that tell in their log which group they began in.
class UserManagerTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_manager.problem().empty())
            GTEST_SKIP() << m_manager.problem();
        if (!connectToBus())
            GTEST_SKIP() << "this manager doesn't come to its bus";
        m_folder.writeScript("server", "cat /proc/$$/cgroup; echo $$ >" + m_folder.path("pid") +
                                           "\nwhile :; do sleep 0.05; done");
    }
    ~UserManagerTest() override { killMarked(m_pid, m_folder.path()); }

    /// A user manager comes to the session bus when units of its own for that run. Here the bus runs outside
    /// of it, so these do nothing.
    [[nodiscard]] bool connectToBus() const {
        const std::string paths = qgetenv("SYSTEMD_UNIT_PATH").toStdString();
        const std::string units = paths.substr(0, paths.find(':'));
        std::ofstream(units + "/dbus.socket") << "[Socket]\nListenStream=%t/unused\n";
        std::ofstream(units + "/dbus.service")
            << "[Unit]\nRequires=dbus.socket\nAfter=dbus.socket\n[Service]\nExecStart=/bin/sleep 600\n";
        const auto isOnBus = [] {
            return runProgram({findProgram("dbus-send").value_or("/bin/false"), "--session", "--print-reply",
                               "--dest=org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                               "org.freedesktop.DBus.Peer.Ping"})
                       .status == 0;
        };
        return m_manager.systemctl({"daemon-reload"}).status == 0 &&
               m_manager.systemctl({"start", "dbus.service"}).status == 0 && eventually(isOnBus);
    }
    [[nodiscard]] std::string groupsOf(Pid pid) const {
        return readFile("/proc/" + std::to_string(pid) + "/cgroup");
    }
    void awaitServer() {
        ASSERT_TRUE(waitFor([&] { return readFile(m_folder.path("pid")).ends_with('\n'); }));
        m_pid = awaitPid(m_folder.path("pid"));
    }

    TemporaryFolder m_folder;
    UserServiceManager m_manager;
    Pid m_pid = -1;
};

TEST_F(UserManagerTest, aCommandBeginsInAScopeOfItsOwn) {
    const auto bus = QDBusConnection::connectToBus(
        QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")), QStringLiteral("launch"));
    ASSERT_TRUE(bus.isConnected());
    {
        ShellLauncher launcher({.logsFolder = m_folder.path(), .shells = {"/bin/sh"}, .bus = bus});
        const auto launched = launcher.launch(
            {.command = m_folder.path("server"), .folder = m_folder.path(), .log = m_folder.path("log")},
            [] { FAIL(); });
        ASSERT_TRUE(launched) << launched.error();
        awaitServer();
        EXPECT_EQ(m_pid, (*launched)->pid());
        EXPECT_THAT(groupsOf(m_pid), testing::ContainsRegex("tarnvale-launch-[0-9]+\\.scope"));
        EXPECT_THAT(readFile(m_folder.path("log")), HasSubstr("tarnvale-launch-"))
            << "from its first step on";
        const std::string units = m_manager.systemctl({"list-units", "--plain", "--no-legend"}).output;
        EXPECT_THAT(units, HasSubstr("Launched by Tarnvale: " + m_folder.path("server")));
        killMarked(m_pid, m_folder.path());
        EXPECT_TRUE(waitFor([&] { return !(*launched)->isRunning(); }));
        EXPECT_TRUE(waitFor([&] {
            return m_manager.systemctl({"list-units", "--all", "--plain"}).output.find("tarnvale-launch-") ==
                   std::string::npos;
        })) << "an ended scope is forgotten";
    }
    settle();
    QDBusConnection::disconnectFromBus(QStringLiteral("launch"));
}

TEST_F(UserManagerTest, aCommandOutlivesTheUnitOfItsLauncher) {
    ASSERT_TRUE(
        m_manager.run("app-tarnvale-test",
                      {LAUNCH_AND_WAIT, m_folder.path(), m_folder.path("log"), m_folder.path("server")},
                      m_folder.path(), {"--setenv=SHELL=/bin/sh"}));
    awaitServer();
    const Pid launcher = m_manager.mainPid("app-tarnvale-test.service");
    EXPECT_THAT(groupsOf(launcher), HasSubstr("app-tarnvale-test.service"));
    EXPECT_THAT(groupsOf(m_pid), Not(HasSubstr("app-tarnvale-test.service")));
    EXPECT_EQ(m_manager.systemctl({"stop", "app-tarnvale-test.service"}).status, 0);
    EXPECT_FALSE(isAlive(launcher));
    EXPECT_TRUE(isAlive(m_pid));
}

} // namespace
} // namespace tarnvale
