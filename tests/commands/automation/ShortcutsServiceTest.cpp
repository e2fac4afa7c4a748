#include "commands/automation/AutomationBusTest.h"

#include <csignal>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class ShortcutsServiceTest : public AutomationBusTest {
protected:
    ShortcutsServiceTest() { interface = "dev.tarnvale.Shortcuts"; }
};

TEST_F(ShortcutsServiceTest, theListIsAnswered) {
    startApplication();
    const QDBusMessage reply = call("ListDevPorts");
    ASSERT_EQ(reply.signature(), "ass") << reply.errorMessage().toStdString();
    EXPECT_EQ(reply.arguments()[0].toStringList(), QStringList({"3000 · shop", "5173 · blog"}));
    EXPECT_EQ(reply.arguments()[1], "3000 · shop\n5173 · blog");
}

TEST_F(ShortcutsServiceTest, duringTheStartTheListIsAnsweredToo) {
    const QDBusMessage reply = call("ListDevPorts");
    ASSERT_EQ(reply.signature(), "ass");
    EXPECT_TRUE(reply.arguments()[0].toStringList().isEmpty());
    EXPECT_EQ(reply.arguments()[1], "No dev servers are running.");
}

TEST_F(ShortcutsServiceTest, freeingIsAnsweredWhenItIsDone) {
    startApplication();
    const auto pending = send("FreePort", {3000});
    ASSERT_TRUE(waitFor([&] { return !world.processes.sent.empty(); }));
    quiesce();
    EXPECT_FALSE(pending.isFinished());
    EXPECT_EQ(answerTo(pending).arguments(), QVariantList{"Stopped shop on port 3000."});
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
}

TEST_F(ShortcutsServiceTest, duringTheStartNothingIsFreed) {
    EXPECT_EQ(call("FreePort", {3000}).arguments(),
              QVariantList{"Tarnvale isn't ready yet — try again in a moment."});
}

TEST_F(ShortcutsServiceTest, aPortIsOpened) {
    EXPECT_EQ(errorOf("OpenPort", {4321}), "");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4321"));
}

TEST_F(ShortcutsServiceTest, aPortOutsideTheRangeIsRefused) {
    startApplication();
    for (const int port : {0, 65536, -1, 2147483647, -2147483647 - 1})
        for (const QString method : {"FreePort", "OpenPort"})
            EXPECT_EQ(errorOf(method, {port}), invalidArgs) << port;
    EXPECT_EQ(call("OpenPort", {0}).errorMessage(), "A port is a number from 1 to 65535, not 0.");
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(ShortcutsServiceTest, otherArgumentsAreRefused) {
    startApplication();
    struct Row {
        QString method;
        QVariantList arguments;
        std::string error;
        std::string reason;
    };
    const std::vector<Row> rows{
        {"FreePort", {}, unknownMethod, "no port"},
        {"FreePort", {"3000"}, unknownMethod, "a text"},
        {"FreePort", {QVariant::fromValue(3000u)}, unknownMethod, "an unsigned number"},
        {"FreePort", {QVariant::fromValue(qlonglong(3000))}, unknownMethod, "a longer number"},
        {"FreePort", {3000.0}, unknownMethod, "a broken number"},
        {"FreePort", {3000, 5173}, unknownMethod, "two ports"},
        {"OpenPort", {3000, "x"}, unknownMethod, "more behind it"},
        {"OpenPort", {QVariantList{3000}}, unknownMethod, "a list"},
        {"ListDevPorts", {1}, unknownMethod, "an argument"},
        {"ClosePort", {3000}, unknownMethod, "another method"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(errorOf(row.method, row.arguments), row.error) << row.reason;
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(ShortcutsServiceTest, aFloodIsRefusedAndPasses) {
    startApplication();
    std::vector<QDBusPendingCall> calls;
    for (int i = 0; i < 500; ++i)
        calls.push_back(
            send(i % 2 ? "ListDevPorts" : "FreePort", i % 2 ? QVariantList() : QVariantList{4000 + i}));
    int answered = 0;
    for (const QDBusPendingCall &pending : calls) {
        const std::string error = answerTo(pending).errorName().toStdString();
        answered += error.empty();
        EXPECT_TRUE(error.empty() || error == limitsExceeded) << error;
    }
    EXPECT_GE(answered, int(ShortcutQueue::mostWaiting));
    EXPECT_EQ(errorOf("ListDevPorts"), "") << "afterwards all is well";
}

TEST_F(ShortcutsServiceTest, aCallerThatGoesHarmsNobody) {
    startApplication();
    const QString name = "passing";
    QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name)
        .asyncCall(QDBusMessage::createMethodCall(server->baseService(), path, interface, "FreePort")
                   << 3000);
    ASSERT_TRUE(waitFor([&] { return !world.processes.sent.empty(); }));
    QDBusConnection::disconnectFromBus(name);
    EXPECT_EQ(errorOf("ListDevPorts"), "");
}

TEST_F(ShortcutsServiceTest, theInterfaceIsDescribedAsItIsInstalled) {
    interface = "org.freedesktop.DBus.Introspectable";
    QString told = call("Introspect").arguments().value(0).toString();
    QString installed = QString::fromStdString(readFile(TARNVALE_PACKAGING "/dev.tarnvale.Shortcuts.xml"));
    const auto part = [](const QString &text) {
        const auto begin = text.indexOf("<interface name=\"dev.tarnvale.Shortcuts\">");
        return text.mid(begin, text.indexOf("</interface>", begin) - begin);
    };
    EXPECT_EQ(part(told), part(installed));
    EXPECT_TRUE(part(told).contains("FreePort"));
}

} // namespace
} // namespace tarnvale
