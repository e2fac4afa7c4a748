#include "commands/automation/SingleInstance.h"

#include "commands/automation/applicationId.h"
#include "platform/linux/PrivateBus.h"
#include "support/TemporaryFolder.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gmock/gmock.h>
#include <memory>
#include <sysexits.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;

/// A program that starts as the application does.
class Start {
public:
    Start(const QStringList &words, const QProcessEnvironment &environment) {
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(ONE_OF_MANY), words);
    }
    Start(const Start &) = delete;
    Start &operator=(const Start &) = delete;
    ~Start() {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// The next line that it says; empty when it ends without one.
    [[nodiscard]] std::string line() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(20000)) {
        }
        return m_process.readLine().trimmed().toStdString();
    }

    [[nodiscard]] int status() {
        const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(20000);
        return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    [[nodiscard]] std::string complaint() { return m_process.readAllStandardError().toStdString(); }
    void goOn() {
        m_process.write("\n");
        m_process.waitForBytesWritten();
    }
    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

/// The two roads: with a session bus, and without.
class SingleInstanceTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (GetParam() && !bus.isRunning())
            GTEST_SKIP() << "there is no dbus-daemon";
        const QString address =
            GetParam() ? QString::fromStdString(bus.address()) : QStringLiteral("unix:path=/nonexistent/bus");
        environment.insert("DBUS_SESSION_BUS_ADDRESS", address);
        environment.insert("XDG_RUNTIME_DIR", QString::fromStdString(folder.path()));
        environment.insert("TEST_PATIENCE", "60000");
        environment.remove("XDG_ACTIVATION_TOKEN");
        environment.remove("DESKTOP_STARTUP_ID");
    }

    [[nodiscard]] std::unique_ptr<Start> program(const QStringList &words = {}) const {
        return std::make_unique<Start>(words, environment);
    }

    PrivateBus bus;
    TemporaryFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_P(SingleInstanceTest, theSecondAsksTheFirstToShowItself) {
    const auto first = program();
    ASSERT_EQ(first->line(), "first");
    environment.insert("XDG_ACTIVATION_TOKEN", "token-1");
    EXPECT_EQ(program()->status(), EX_OK);
    EXPECT_EQ(first->line(), "activate token-1");
    environment.remove("XDG_ACTIVATION_TOKEN");
    environment.insert("DESKTOP_STARTUP_ID", "startup-2");
    EXPECT_EQ(program()->status(), EX_OK);
    EXPECT_EQ(first->line(), "activate startup-2");
}

TEST_P(SingleInstanceTest, anActionIsHandedOn) {
    const auto first = program();
    ASSERT_EQ(first->line(), "first");
    EXPECT_EQ(program({"action", "toggle-panel"})->status(), EX_OK);
    EXPECT_EQ(first->line(), "toggle");
    EXPECT_EQ(program({"action", "quit"})->status(), EX_OK);
    EXPECT_EQ(first->status(), 0);
}

TEST_P(SingleInstanceTest, aRefusedActionIsToldOnStandardError) {
    const auto first = program();
    ASSERT_EQ(first->line(), "first");
    const auto second = program({"action", "explode"});
    EXPECT_EQ(second->status(), EX_TEMPFAIL);
    EXPECT_EQ(second->complaint(),
              "tarnvale: Tarnvale is running already and refused: There is no action \"explode\".\n");
}

TEST_P(SingleInstanceTest, aSecondServiceEndsWithoutAWord) {
    const auto first = program();
    ASSERT_EQ(first->line(), "first");
    EXPECT_EQ(program({"service"})->status(), EX_OK);
    EXPECT_EQ(program()->status(), EX_OK);
    EXPECT_EQ(first->line(), "activate") << "of the third";
}

TEST_P(SingleInstanceTest, ofManyAtOnceOneIsFirstAndHearsOfAllOthers) {
    constexpr int count = 8;
    std::vector<std::unique_ptr<Start>> starts;
    for (int i = 0; i < count; ++i)
        starts.push_back(program());
    Start *first = nullptr;
    for (const auto &start : starts)
        if (start->line() == "first") {
            EXPECT_EQ(first, nullptr) << "two of them";
            first = start.get();
        } else {
            EXPECT_EQ(start->status(), EX_OK);
        }
    ASSERT_NE(first, nullptr);
    for (int i = 0; i < count - 1; ++i)
        EXPECT_EQ(first->line(), "activate");
}

TEST_P(SingleInstanceTest, aRequestWaitsForTheStartOfTheFirst) {
    const auto first = program({"late"});
    ASSERT_EQ(first->line(), "first");
    const auto second = program();
    first->goOn();
    EXPECT_EQ(second->status(), EX_OK);
    EXPECT_EQ(first->line(), "activate");
}

TEST_P(SingleInstanceTest, aFirstThatHangsIsToldOnStandardError) {
    const auto first = program({"late"});
    ASSERT_EQ(first->line(), "first");
    environment.insert("TEST_PATIENCE", "300");
    const auto second = program();
    EXPECT_EQ(second->status(), EX_TEMPFAIL);
    EXPECT_EQ(second->complaint(),
              "tarnvale: Tarnvale is running already but doesn't answer. End it, then try again.\n");
    first->goOn();
    EXPECT_EQ(first->line(), "activate") << "and is asked all the same when it goes on";
}

TEST_P(SingleInstanceTest, whoIsAskedAndDiesIsReplaced) {
    const auto first = program({"die"});
    ASSERT_EQ(first->line(), "first");
    const auto second = program();
    EXPECT_EQ(second->line(), "first");
    EXPECT_EQ(first->line(), "activate");
}

TEST_P(SingleInstanceTest, oneThatWasKilledIsReplaced) {
    const auto first = program();
    ASSERT_EQ(first->line(), "first");
    first->kill();
    const auto second = program();
    EXPECT_EQ(second->line(), "first");
    EXPECT_EQ(program()->status(), EX_OK) << "which is reached as well";
    EXPECT_EQ(second->line(), "activate");
}

INSTANTIATE_TEST_SUITE_P(Roads, SingleInstanceTest, testing::Bool(),
                         [](const auto &road) { return road.param ? "WithABus" : "WithoutABus"; });

TEST(SingleInstanceOnABus, anOwnerThatKnowsNothingOfThisRefuses) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "there is no dbus-daemon";
    QDBusConnection foreign = bus.connect();
    ASSERT_TRUE(foreign.registerService(applicationName));
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromStdString(bus.address()));
    environment.insert("TEST_PATIENCE", "60000");
    Start second({}, environment);
    EXPECT_EQ(second.status(), EX_TEMPFAIL);
    EXPECT_THAT(second.complaint(), HasSubstr("Tarnvale is running already and refused"));
}

TEST(SingleInstanceOnABus, theNameIsNeitherGivenAwayNorQueuedFor) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "there is no dbus-daemon";
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromStdString(bus.address()));
    environment.insert("TEST_PATIENCE", "60000");
    Start first({}, environment);
    ASSERT_EQ(first.line(), "first");
    const QDBusConnection thief = bus.connect();
    const auto taken =
        thief.interface()->registerService(applicationName, QDBusConnectionInterface::ReplaceExistingService,
                                           QDBusConnectionInterface::AllowReplacement);
    EXPECT_EQ(taken.value(), QDBusConnectionInterface::ServiceNotRegistered);
}

} // namespace
} // namespace tarnvale
