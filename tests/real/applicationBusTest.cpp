// What other programs ask of the running application over the session bus.

#include "real/RealProcess.h"
#include "real/applicationTest.h"
#include "real/servers.h"
#include "support/ManualClock.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <filesystem>

namespace tarnvale {
namespace {

using testing::HasSubstr;

const QString service = QStringLiteral("dev.tarnvale.Tarnvale");
const QString path = QStringLiteral("/dev/tarnvale/Tarnvale");
const QString shortcuts = QStringLiteral("dev.tarnvale.Shortcuts");
const QString desktopInterface = QStringLiteral("org.freedesktop.Application");

class ApplicationBusTest : public ApplicationTest {
protected:
    void SetUp() override {
        ApplicationTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(startApplication()) << state();
    }

    [[nodiscard]] QDBusMessage call(const QString &interface, const QString &member,
                                    const QVariantList &arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
        message.setArguments(arguments);
        return connection.call(message);
    }

    [[nodiscard]] ProgramRun busctl(const std::vector<std::string> &words) const {
        std::vector<std::string> all{"/usr/bin/busctl", "--user", "call", "dev.tarnvale.Tarnvale",
                                     "/dev/tarnvale/Tarnvale"};
        all.insert(all.end(), words.begin(), words.end());
        return desktop.run(all);
    }

    QDBusConnection connection = desktop.bus.connect();
    ReservedPort port;
};

TEST_F(ApplicationBusTest, aServerIsListedAndFreed) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    RealProcess server({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const QDBusMessage list = call(shortcuts, QStringLiteral("ListDevPorts"));
    ASSERT_EQ(list.type(), QDBusMessage::ReplyMessage) << list.errorMessage().toStdString();
    ASSERT_EQ(list.signature().toStdString(), "ass");
    const QStringList lines = list.arguments()[0].toStringList();
    EXPECT_EQ(list.arguments()[1].toString(), lines.join(QLatin1Char('\n')));
    EXPECT_EQ(lines.filter(QString::number(port.number()) + QStringLiteral(" · ")).size(), 1);

    const QDBusMessage freed = call(shortcuts, QStringLiteral("FreePort"), {int(port.number())});
    EXPECT_THAT(freed.arguments().value(0).toString().toStdString(),
                testing::AllOf(testing::StartsWith("Stopped "), HasSubstr(" on port " + port.text() + ".")));
    EXPECT_TRUE(server.waitForEnd());
    const QDBusMessage again = call(shortcuts, QStringLiteral("FreePort"), {int(port.number())});
    EXPECT_EQ(again.arguments().value(0).toString().toStdString(),
              "Nothing is listening on port " + port.text() + ".");
}

TEST_F(ApplicationBusTest, toolsOfTheCommandLineReachIt) {
    for (const char *program : {"/usr/bin/busctl", "/usr/bin/gdbus"})
        if (!std::filesystem::exists(program))
            GTEST_SKIP() << program << " isn't installed";
    const ProgramRun free = busctl({"dev.tarnvale.Shortcuts", "FreePort", "i", port.text()});
    EXPECT_EQ(free.output, "s \"Nothing is listening on port " + port.text() + ".\"\n") << free.error;
    for (const char *outside : {"0", "-1", "65536", "2147483647"}) {
        const ProgramRun open = busctl({"--", "dev.tarnvale.Shortcuts", "OpenPort", "i", outside});
        EXPECT_NE(open.status, 0);
        EXPECT_THAT(open.error, HasSubstr("65535")) << outside;
    }
    const ProgramRun list = desktop.run({"/usr/bin/gdbus", "call", "--session", "--dest",
                                         "dev.tarnvale.Tarnvale", "--object-path", "/dev/tarnvale/Tarnvale",
                                         "--method", "dev.tarnvale.Shortcuts.ListDevPorts"});
    EXPECT_EQ(list.status, 0) << list.error;
    EXPECT_THAT(list.output, testing::StartsWith("("));
}

TEST_F(ApplicationBusTest, callsThatMakeNoSenseAreRefused) {
    struct Row {
        const char *what;
        QString interface;
        const char *member;
        QVariantList arguments;
        const char *error;
    };
    const QVariantMap none;
    const QVariantList noParameters;
    const QString longName(100'000, QLatin1Char('x'));
    const Row rows[]{
        {"a port that is a text", shortcuts, "FreePort", {QStringLiteral("80")}, "UnknownMethod"},
        {"no port", shortcuts, "FreePort", {}, "UnknownMethod"},
        {"two ports", shortcuts, "OpenPort", {80, 81}, "UnknownMethod"},
        {"a port below the range", shortcuts, "FreePort", {0}, "InvalidArgs"},
        {"a port beyond it", shortcuts, "OpenPort", {65536}, "InvalidArgs"},
        {"an unknown member", shortcuts, "Frob", {}, "UnknownMethod"},
        {"an unknown interface", QStringLiteral("dev.tarnvale.Frob"), "Frob", {}, "UnknownInterface"},
        {"an action without a name",
         desktopInterface,
         "ActivateAction",
         {QString(), noParameters, none},
         "InvalidArgs"},
        {"an action that isn't there",
         desktopInterface,
         "ActivateAction",
         {QStringLiteral("frob"), noParameters, none},
         "InvalidArgs"},
        {"an endless name",
         desktopInterface,
         "ActivateAction",
         {longName, noParameters, none},
         "InvalidArgs"},
        {"a parameter too many",
         desktopInterface,
         "ActivateAction",
         {QStringLiteral("quit"), QVariantList{1}, none},
         "InvalidArgs"},
        {"no parameter",
         desktopInterface,
         "ActivateAction",
         {QStringLiteral("free-port"), noParameters, none},
         "InvalidArgs"},
        {"no platform data", desktopInterface, "Activate", {}, "UnknownMethod"},
    };
    for (const Row &row : rows) {
        const QDBusMessage reply = call(row.interface, QString::fromLatin1(row.member), row.arguments);
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << row.what;
        EXPECT_EQ(reply.errorName().toStdString(), std::string("org.freedesktop.DBus.Error.") + row.error)
            << row.what;
    }
    EXPECT_TRUE(application->isRunning()) << state();
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationBusTest, aFloodIsAnsweredAndLeavesItWell) {
    constexpr int flood = 500;
    const QDBusMessage list =
        QDBusMessage::createMethodCall(service, path, shortcuts, QStringLiteral("ListDevPorts"));
    std::vector<QDBusPendingCall> calls;
    for (int i = 0; i < flood; ++i)
        calls.push_back(connection.asyncCall(list));
    int answers = 0;
    for (QDBusPendingCall &pending : calls) {
        ASSERT_TRUE(waitFor([&] { return pending.isFinished(); }, std::chrono::seconds(60))) << state();
        const QDBusMessage reply = pending.reply();
        if (reply.type() == QDBusMessage::ReplyMessage)
            ++answers;
        else
            EXPECT_EQ(reply.errorName().toStdString(), "org.freedesktop.DBus.Error.LimitsExceeded");
    }
    EXPECT_GT(answers, 0);
    EXPECT_EQ(call(shortcuts, QStringLiteral("ListDevPorts")).type(), QDBusMessage::ReplyMessage);
    ASSERT_TRUE(togglePanel());
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
}

TEST_F(ApplicationBusTest, theActionEndsIt) {
    const QDBusMessage reply = call(desktopInterface, QStringLiteral("ActivateAction"),
                                    {QStringLiteral("quit"), QVariantList(), QVariantMap()});
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    EXPECT_EQ(application->waitForEnd(), 0) << state();
}

} // namespace
} // namespace tarnvale
