#include "commands/automation/RunnerService.h"

#include "commands/automation/AutomationBusTest.h"

#include <csignal>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class RunnerServiceTest : public AutomationBusTest {
protected:
    RunnerServiceTest() {
        path = applicationPath + "/Runner";
        interface = "org.kde.krunner1";
    }

    [[nodiscard]] QList<RunnerMatch> match(const QString &query) {
        const QDBusMessage reply = call("Match", {query});
        EXPECT_EQ(reply.signature(), "a(sssida{sv})") << reply.errorMessage().toStdString();
        return qdbus_cast<QList<RunnerMatch>>(reply.arguments().value(0));
    }

    [[nodiscard]] std::vector<std::string> found(const QString &query) {
        std::vector<std::string> ids;
        for (const RunnerMatch &each : match(query))
            ids.push_back(each.id.toStdString());
        return ids;
    }
};

TEST_F(RunnerServiceTest, itsOneActionFrees) {
    const QDBusMessage reply = call("Actions");
    ASSERT_EQ(reply.signature(), "a(sss)");
    const auto actions = qdbus_cast<QList<RunnerAction>>(reply.arguments()[0]);
    ASSERT_EQ(actions.size(), 1);
    EXPECT_EQ(actions[0], (RunnerAction{"free", "Free a Port", "process-stop"}));
}

TEST_F(RunnerServiceTest, portsAreFound) {
    startApplication();
    EXPECT_THAT(found("3000"), ElementsAre("open:3000:42"));
    EXPECT_THAT(found("  SHOP "), ElementsAre("open:3000:42"));
    EXPECT_THAT(found("free 3000"), ElementsAre("open:3000:42")) << "freeing is the action of the match";
    EXPECT_THAT(found("free"), IsEmpty());
    EXPECT_THAT(found(""), IsEmpty());
    EXPECT_THAT(found(QString(100000, '3')), IsEmpty());
}

TEST_F(RunnerServiceTest, aMatchIsDescribed) {
    startApplication();
    const auto exact = match("3000").value(0);
    EXPECT_EQ(exact.text, "3000 · shop");
    EXPECT_EQ(exact.icon, "dev.tarnvale.Tarnvale");
    EXPECT_EQ(exact.type, 100);
    EXPECT_EQ(exact.properties.value("subtext"), "http://localhost:3000");
    EXPECT_EQ(exact.properties.value("actions"), QStringList{"free"});
    const auto possible = match("30").value(0);
    EXPECT_LT(possible.type, exact.type);
    EXPECT_LT(possible.relevance, exact.relevance);
}

TEST_F(RunnerServiceTest, duringTheStartThereAreNoMatches) {
    EXPECT_THAT(found("3000"), IsEmpty());
}

TEST_F(RunnerServiceTest, aMatchOpensItsPort) {
    startApplication();
    EXPECT_EQ(errorOf("Run", {"open:3000:42", ""}), "");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(RunnerServiceTest, itsActionFreesThePort) {
    startApplication();
    EXPECT_EQ(errorOf("Run", {"open:3000:42", "free"}), "");
    pass(std::chrono::seconds(1));
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
    EXPECT_THAT(done, ElementsAre("tell Stopped shop on port 3000."));
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(RunnerServiceTest, otherMatchesAndActionsAreRefused) {
    startApplication();
    EXPECT_EQ(errorOf("Run", {"free:3000:42", ""}), invalidArgs) << "never by default";
    EXPECT_EQ(errorOf("Run", {"open:3000:42", "kill"}), invalidArgs);
    EXPECT_EQ(errorOf("Run", {"nonsense", "free"}), invalidArgs);
    EXPECT_EQ(errorOf("Run", {"open:3000:42"}), unknownMethod);
    EXPECT_EQ(errorOf("Match", {3000}), unknownMethod);
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(RunnerServiceTest, itTellsHowItLikesToBeAsked) {
    const QDBusMessage reply = call("Config");
    EXPECT_EQ(reply.signature(), "a{sv}");
    EXPECT_EQ(qdbus_cast<QVariantMap>(reply.arguments()[0]).value("MinLetterCount"), 2);
    EXPECT_EQ(errorOf("Teardown"), "");
}

} // namespace
} // namespace tarnvale
