// The tools that users call the bus with.

#include "commands/automation/AutomationBusTest.h"

#include <QFile>
#include <QProcess>

#include <csignal>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Signal = FakeProcessControl::Signal;

class BusToolsTest : public AutomationBusTest {
protected:
    void SetUp() override {
        AutomationBusTest::SetUp();
        if (!IsSkipped()) {
            ASSERT_TRUE(server->registerService(applicationName));
            startApplication();
        }
    }

    /// What a tool says while the application goes on; the end of its complaint when it fails.
    [[nodiscard]] std::string outputOf(const QString &tool, const QStringList &arguments) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromStdString(bus.address()));
        process.setProcessEnvironment(environment);
        process.start(tool, arguments);
        EXPECT_TRUE(waitFor([&] {
            pass(std::chrono::milliseconds(50));
            return process.state() == QProcess::NotRunning;
        })) << tool.toStdString();
        return (process.exitCode() == 0 ? process.readAllStandardOutput() : process.readAllStandardError())
            .trimmed()
            .toStdString();
    }
};

#define NEEDS(tool)                                                                                          \
    if (!QFile::exists(QStringLiteral("/usr/bin/" tool)))                                                    \
    GTEST_SKIP() << "there is no " tool

TEST_F(BusToolsTest, busctlCallsTheShortcuts) {
    NEEDS("busctl");
    const auto call = [this](const QStringList &arguments) {
        return outputOf("busctl", QStringList{"--user", "call", applicationName, applicationPath,
                                              "dev.tarnvale.Shortcuts"} +
                                      arguments);
    };
    EXPECT_EQ(call({"ListDevPorts"}), "ass 2 \"3000 \\302\\267 shop\" \"5173 \\302\\267 blog\""
                                      " \"3000 \\302\\267 shop\\n5173 \\302\\267 blog\"");
    EXPECT_EQ(call({"FreePort", "i", "3000"}), "s \"Stopped shop on port 3000.\"");
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
    EXPECT_THAT(call({"FreePort", "i", "65536"}),
                HasSubstr("A port is a number from 1 to 65535, not 65536."));
}

TEST_F(BusToolsTest, gdbusReadsTheTypesFromTheDescription) {
    NEEDS("gdbus");
    const auto call = [this](const QString &method, const QString &argument) {
        return outputOf("gdbus", {"call", "--session", "--dest", applicationName, "--object-path",
                                  applicationPath, "--method", method, argument});
    };
    EXPECT_EQ(call("dev.tarnvale.Shortcuts.OpenPort", "4321"), "()");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4321"));
    EXPECT_EQ(call("org.freedesktop.Application.Activate", "{'activation-token': <'abc'>}"), "()");
    EXPECT_THAT(done, ElementsAre("activate abc"));
    EXPECT_THAT(call("dev.tarnvale.Shortcuts.OpenPort", "0"), HasSubstr("InvalidArgs"));
}

TEST_F(BusToolsTest, gapplicationActivatesAndActs) {
    NEEDS("gapplication");
    EXPECT_EQ(outputOf("gapplication", {"launch", applicationName}), "");
    EXPECT_EQ(outputOf("gapplication", {"action", applicationName, "toggle-panel"}), "");
    EXPECT_EQ(outputOf("gapplication", {"action", applicationName, "open-port", "4321"}), "");
    EXPECT_EQ(outputOf("gapplication", {"action", applicationName, "free-port", "'3000'"}), "");
    pass(std::chrono::seconds(1));
    ASSERT_EQ(done.size(), 3u);
    EXPECT_THAT(done[0], HasSubstr("activate"));
    EXPECT_THAT(done[1], HasSubstr("toggle"));
    EXPECT_EQ(done[2], "tell Stopped shop on port 3000.");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4321"));
    EXPECT_THAT(outputOf("gapplication", {"action", applicationName, "explode"}),
                HasSubstr("There is no action"));
}

} // namespace
} // namespace tarnvale
