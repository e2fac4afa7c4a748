#include "commands/automation/AutomationBusTest.h"

#include <csignal>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class ApplicationServiceTest : public AutomationBusTest {
protected:
    ApplicationServiceTest() { interface = applicationInterface; }

    [[nodiscard]] QVariantList action(const QString &name, const QVariantList &parameters = {},
                                      const QVariantMap &platformData = {}) const {
        return {name, QVariant(parameters), platformData};
    }

    [[nodiscard]] std::string activate(const QString &name, const QVariantList &parameters = {}) {
        return errorOf("ActivateAction", action(name, parameters));
    }
};

TEST_F(ApplicationServiceTest, itShowsItself) {
    startApplication();
    EXPECT_EQ(errorOf("Activate", {QVariantMap()}), "");
    EXPECT_EQ(errorOf("Activate", {QVariantMap{{"activation-token", "abc"}}}), "");
    EXPECT_EQ(errorOf("Activate", {QVariantMap{{"activation-token", "a\nb"}}}), "");
    EXPECT_EQ(errorOf("Open", {QStringList{"file:///etc/passwd"}, QVariantMap{{"desktop-startup-id", "x"}}}),
              "");
    EXPECT_THAT(done, ElementsAre("activate ", "activate abc", "activate ", "activate x"));
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(ApplicationServiceTest, itsActionsAreDone) {
    startApplication();
    EXPECT_EQ(errorOf("ActivateAction", action("toggle-panel", {}, {{"activation-token", "abc"}})), "");
    EXPECT_EQ(activate("show-window"), "");
    EXPECT_EQ(activate("quit"), "");
    quiesce();
    EXPECT_THAT(done, ElementsAre("toggle abc", "window ", "quit"));
}

TEST_F(ApplicationServiceTest, theListIsTold) {
    startApplication();
    EXPECT_EQ(activate("list"), "");
    quiesce();
    EXPECT_THAT(done, ElementsAre("tell 3000 · shop\n5173 · blog"));
}

TEST_F(ApplicationServiceTest, aPortIsANumberOrItsText) {
    startApplication();
    EXPECT_EQ(activate("open-port", {4321}), "");
    EXPECT_EQ(activate("open-port", {"4322"}), "");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4321", "http://localhost:4322"));
    EXPECT_EQ(activate("free-port", {"3000"}), "");
    pass(std::chrono::seconds(1));
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
    EXPECT_THAT(done, ElementsAre("tell Stopped shop on port 3000."));
}

TEST_F(ApplicationServiceTest, whatIsNoActionIsRefused) {
    startApplication();
    struct Row {
        QString action;
        QVariantList parameters;
        std::string reason;
    };
    const std::vector<Row> rows{
        {"", {}, "no name"},
        {"explode", {}, "unknown"},
        {QString(100000, 'x'), {}, "a long name"},
        {"toggle-panel", {1}, "a parameter too many"},
        {"list", {"x"}, "a parameter too many"},
        {"free-port", {}, "no port"},
        {"free-port", {3000, 5173}, "two ports"},
        {"free-port", {0}, "0"},
        {"free-port", {65536}, "65536"},
        {"free-port", {"65536"}, "65536 as a text"},
        {"free-port", {"3000; rm -rf /"}, "more than a number"},
        {"free-port", {QString(100000, '1')}, "a long text"},
        {"free-port", {3000.0}, "a broken number"},
        {"free-port", {QVariant::fromValue(qlonglong(3000))}, "a longer number"},
        {"free-port", {true}, "a truth"},
        {"free-port", {QVariantList{3000}}, "a list"},
        {"open-port", {""}, "an empty text"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(activate(row.action, row.parameters), invalidArgs) << row.reason;
    EXPECT_THAT(done, IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(ApplicationServiceTest, otherArgumentsAreRefused) {
    startApplication();
    EXPECT_EQ(errorOf("Activate"), unknownMethod);
    EXPECT_EQ(errorOf("Activate", {"x"}), unknownMethod);
    EXPECT_EQ(errorOf("Open", {QVariantMap()}), unknownMethod);
    EXPECT_EQ(errorOf("ActivateAction", {"list"}), unknownMethod);
    EXPECT_EQ(errorOf("ActivateAction", {1, QVariantList(), QVariantMap()}), unknownMethod);
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(ApplicationServiceTest, whatIsNotOfferedIsRefused) {
    addServer(42, 3000);
    start();
    automation->start(*store, {});
    for (const QString name : {"show-window", "toggle-panel", "quit"})
        EXPECT_EQ(activate(name), invalidArgs) << name.toStdString();
    EXPECT_EQ(activate("list"), "") << "with nobody to tell";
    EXPECT_EQ(activate("free-port", {3000}), "");
    pass(std::chrono::seconds(1));
    EXPECT_EQ(world.processes.sent.size(), 1u);
}

TEST_F(ApplicationServiceTest, whatIsAskedDuringTheStartIsDoneAfterIt) {
    const auto first = send("Activate", {QVariantMap{{"activation-token", "abc"}}});
    const auto second = send("ActivateAction", action("toggle-panel"));
    const auto wrong = send("ActivateAction", action("explode"));
    bus.settle();
    EXPECT_FALSE(first.isFinished());
    EXPECT_THAT(done, IsEmpty());
    startApplication();
    EXPECT_EQ(answerTo(first).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(answerTo(second).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(answerTo(wrong).errorName().toStdString(), invalidArgs);
    EXPECT_THAT(done, ElementsAre("activate abc", "toggle "));
}

TEST_F(ApplicationServiceTest, aFloodDuringTheStartIsRefused) {
    std::vector<QDBusPendingCall> calls;
    for (std::size_t i = 0; i < ApplicationService::mostWaiting + 10; ++i)
        calls.push_back(send("Activate", {QVariantMap()}));
    EXPECT_EQ(answerTo(calls.back()).errorName().toStdString(), limitsExceeded);
    startApplication();
    EXPECT_EQ(answerTo(calls.front()).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(done.size(), ApplicationService::mostWaiting);
}

TEST_F(ApplicationServiceTest, aFloodOfListsIsRefused) {
    startApplication();
    std::vector<QDBusPendingCall> calls;
    for (int i = 0; i < 200; ++i)
        calls.push_back(send("ActivateAction", action("free-port", {4000 + i})));
    int refused = 0;
    for (const QDBusPendingCall &pending : calls)
        refused += answerTo(pending).errorName().toStdString() == limitsExceeded;
    EXPECT_LT(refused, 200);
    pass(std::chrono::seconds(1));
    EXPECT_EQ(static_cast<int>(done.size()), 200 - refused);
}

} // namespace
} // namespace tarnvale
