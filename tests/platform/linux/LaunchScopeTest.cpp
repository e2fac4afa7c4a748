#include "platform/linux/LaunchScope.h"

#include "platform/linux/PrivateBus.h"
#include "platform/linux/ShellLauncher.h"
#include "platform/linux/SpawnedProcess.h"
#include "support/ManualClock.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

/// What a service manager is asked, and as much of it as answers.
class FakeManager : public QDBusVirtualObject {
public:
    explicit FakeManager(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/systemd1"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.systemd1"));
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override {
        if (message.member() != QStringLiteral("StartTransientUnit"))
            return false;
        message.setDelayedReply(true);
        questions.push_back(message);
        return true;
    }

    void accept(const QDBusMessage &question) {
        m_bus.send(question.createReply(QVariant::fromValue(QDBusObjectPath(QStringLiteral("/job/1")))));
    }
    void refuse(const QDBusMessage &question) {
        m_bus.send(question.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
    }
    void finishJob(const QString &unit) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/systemd1"),
                                                         QStringLiteral("org.freedesktop.systemd1.Manager"),
                                                         QStringLiteral("JobRemoved"));
        signal << 1U << QVariant::fromValue(QDBusObjectPath(QStringLiteral("/job/1"))) << unit
               << QStringLiteral("done");
        m_bus.send(signal);
    }

    std::vector<QDBusMessage> questions;

private:
    QDBusConnection m_bus;
};

class LaunchScopeTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon is not installed";
    }
    ~LaunchScopeTest() override { settle(); }

    /// Asks for a scope and returns the end of the pipe at which the process would wait.
    FileDescriptor ask(const QDBusConnection &connection, std::chrono::milliseconds limit) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        new LaunchScope(connection,
                        {.pid = 4242,
                         .description = "Launched: npm\nstart",
                         .gate = FileDescriptor(ends[1]),
                         .limit = limit},
                        &m_parent);
        return FileDescriptor(ends[0]);
    }
    static bool isReleased(const FileDescriptor &waiting) {
        pollfd end{.fd = waiting.get(), .events = POLLIN, .revents = 0};
        return poll(&end, 1, 0) > 0;
    }
    [[nodiscard]] bool isDone() const { return m_parent.children().isEmpty(); }

    PrivateBus m_bus;
    QObject m_parent;
};

TEST_F(LaunchScopeTest, withoutAManagerNothingIsWaitedFor) {
    const FileDescriptor waiting = ask(m_bus.connect(), 1h);
    EXPECT_TRUE(waitFor([&] { return isReleased(waiting); }));
    EXPECT_TRUE(waitFor([&] { return isDone(); }));
}

TEST_F(LaunchScopeTest, theProcessWaitsUntilTheJobHasRun) {
    FakeManager manager(m_bus.connect());
    const FileDescriptor waiting = ask(m_bus.connect(), 1h);
    ASSERT_TRUE(waitFor([&] { return manager.questions.size() == 1; }));
    const QDBusMessage question = manager.questions.front();
    EXPECT_EQ(question.signature(), QStringLiteral("ssa(sv)a(sa(sv))"));
    const QString unit = question.arguments().value(0).toString();
    EXPECT_TRUE(unit.startsWith(QStringLiteral("tarnvale-launch-")) &&
                unit.endsWith(QStringLiteral(".scope")));
    manager.accept(question);
    manager.finishJob(QStringLiteral("another.scope"));
    m_bus.settle();
    EXPECT_FALSE(isReleased(waiting)) << "the answer only says that there is a job";
    manager.finishJob(unit);
    EXPECT_TRUE(waitFor([&] { return isReleased(waiting); }));
    EXPECT_TRUE(waitFor([&] { return isDone(); }));
}

TEST_F(LaunchScopeTest, aRefusalReleasesTheProcess) {
    FakeManager manager(m_bus.connect());
    const FileDescriptor waiting = ask(m_bus.connect(), 1h);
    ASSERT_TRUE(waitFor([&] { return manager.questions.size() == 1; }));
    EXPECT_FALSE(isReleased(waiting));
    manager.refuse(manager.questions.front());
    EXPECT_TRUE(waitFor([&] { return isReleased(waiting); }));
}

TEST_F(LaunchScopeTest, aManagerThatDoesntAnswerIsNotWaitedForLong) {
    FakeManager manager(m_bus.connect());
    const FileDescriptor waiting = ask(m_bus.connect(), 50ms);
    EXPECT_TRUE(waitFor([&] { return isReleased(waiting) && isDone(); }));
}

TEST_F(LaunchScopeTest, aBusThatGoesReleasesTheProcess) {
    FakeManager manager(m_bus.connect());
    const FileDescriptor waiting = ask(m_bus.connect(), 1h);
    ASSERT_TRUE(waitFor([&] { return manager.questions.size() == 1; }));
    m_bus.stop();
    EXPECT_TRUE(waitFor([&] { return isReleased(waiting); }));
}

TEST_F(LaunchScopeTest, everyScopeHasANameOfItsOwn) {
    FakeManager manager(m_bus.connect());
    const QDBusConnection connection = m_bus.connect();
    const FileDescriptor first = ask(connection, 10ms);
    const FileDescriptor second = ask(connection, 10ms);
    ASSERT_TRUE(waitFor([&] { return manager.questions.size() == 2; }));
    EXPECT_NE(manager.questions[0].arguments().value(0), manager.questions[1].arguments().value(0));
    EXPECT_TRUE(waitFor([&] { return isDone(); }));
}

TEST_F(LaunchScopeTest, theLaunchedCommandBeginsWhenItIsReleased) {
    FakeManager manager(m_bus.connect());
    const TemporaryFolder folder;
    ShellLauncher launcher({.logsFolder = folder.path(), .shells = {"/bin/sh"}, .bus = m_bus.connect()});
    const auto launched = launcher.launch(
        {.command = "echo begun", .folder = folder.path(), .log = folder.path("log")}, [] { FAIL(); });
    ASSERT_TRUE(launched);
    ASSERT_TRUE(waitFor([&] { return manager.questions.size() == 1; }));
    EXPECT_EQ(readFile(folder.path("log")), "");
    manager.refuse(manager.questions.front());
    EXPECT_TRUE(waitFor([&] { return !(*launched)->isRunning(); }));
    EXPECT_TRUE(readFile(folder.path("log")).ends_with("begun\n"));
    settle();
}

TEST_F(LaunchScopeTest, aLauncherThatGoesReleasesTheCommand) {
    FakeManager manager(m_bus.connect());
    const TemporaryFolder folder;
    std::shared_ptr<LaunchedCommand> command;
    {
        ShellLauncher launcher({.logsFolder = folder.path(), .shells = {"/bin/sh"}, .bus = m_bus.connect()});
        const auto launched = launcher.launch(
            {.command = "echo begun", .folder = folder.path(), .log = folder.path("log")}, [] { FAIL(); });
        ASSERT_TRUE(launched);
        command = *launched;
    }
    EXPECT_TRUE(waitFor([&] { return !command->isRunning(); }));
    EXPECT_TRUE(readFile(folder.path("log")).ends_with("begun\n"));
    command.reset();
}

} // namespace
} // namespace tarnvale
