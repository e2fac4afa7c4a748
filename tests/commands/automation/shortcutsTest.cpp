#include "commands/automation/shortcuts.h"

#include "store/StoreTest.h"

#include <csignal>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class ShortcutsTest : public StoreTest {
protected:
    ShortcutsTest() { addServer(42, 3000); }

    [[nodiscard]] DevPorts list() {
        return resultOf(listDevPorts(store.get(), [this] { return scanListeningPorts(world.machine); }));
    }

    [[nodiscard]] std::string free(std::int64_t port, std::optional<Pid> expected = std::nullopt) {
        return resultOf(freePort(store.get(), port, expected)).toStdString();
    }

    /// Lets time pass until the flow has a result.
    template<typename Result> [[nodiscard]] Result resultOf(QCoro::Task<Result> flow) {
        std::optional<Result> result;
        const auto take = [](QCoro::Task<Result> task, std::optional<Result> *place) -> QCoro::Task<> {
            Result value = co_await task;
            place->emplace(std::move(value));
        };
        finish(take(std::move(flow), &result));
        return result.value_or(Result{});
    }

    /// A system service, which lists don't show.
    void addHidden() {
        world.machine.add({.pid = 77, .path = "/usr/sbin/cupsd", .args = "cupsd -l", .cwd = "/"});
        world.machine.listen(77, 631);
    }

    void addContainer() {
        world.machine.add(
            {.pid = 60, .path = "/usr/bin/docker-proxy", .args = "docker-proxy -host-port 8080"});
        world.machine.listen(60, 8080);
        world.machine.publishedPorts[8080] = "shop-db · postgres:16";
        world.tools.installed["docker"] = "/usr/bin/docker";
    }
};

TEST_F(ShortcutsTest, theListHasALineForEachDevServerInOrder) {
    addServer(43, 5173, "vite", "/home/me/blog");
    addHidden();
    start();
    const DevPorts ports = list();
    EXPECT_EQ(ports.lines, QStringList({"3000 · shop", "5173 · blog"}));
    EXPECT_EQ(ports.dialog, "3000 · shop\n5173 · blog");
}

TEST_F(ShortcutsTest, theListIsFresh) {
    start();
    addServer(43, 5173, "vite", "/home/me/blog");
    EXPECT_EQ(list().lines.size(), 2);
}

TEST_F(ShortcutsTest, anEmptyListIsToldInWords) {
    world.machine.end(42);
    start();
    const DevPorts ports = list();
    EXPECT_TRUE(ports.lines.isEmpty());
    EXPECT_EQ(ports.dialog, "No dev servers are running.");
}

TEST_F(ShortcutsTest, duringTheStartTheListIsTheSame) {
    addHidden();
    addContainer();
    const DevPorts early = list();
    start();
    const DevPorts late = list();
    EXPECT_EQ(early.lines, QStringList({"3000 · shop", "8080 · shop-db · postgres:16"}));
    EXPECT_EQ(early.lines, late.lines);
    EXPECT_EQ(early.dialog, late.dialog);
}

TEST_F(ShortcutsTest, theNameIsTheContainerElseTheProjectElseTheTool) {
    ListeningPort port{.pid = 42, .command = "postgres", .port = 5432};
    EXPECT_EQ(portLabel(port), port.displayName());
    port.cwd = "/home/me/shop";
    EXPECT_EQ(portLabel(port), "shop");
    port.cwd = "/home/me/bin";
    EXPECT_EQ(portLabel(port), "bin") << "a generic name is a project's all the same";
    port.container = "shop-db · postgres:16 · x";
    EXPECT_EQ(portLabel(port), "shop-db · postgres:16 · x") << "in full";
}

TEST_F(ShortcutsTest, aNameCannotAddALineOrBreakTheText) {
    const ListeningPort port{
        .pid = 42, .command = "node", .port = 3000, .cwd = "/home/me/a\n22 · ssh\x1b\xff"};
    EXPECT_EQ(portLabel(port), "a\uFFFD22 · ssh\uFFFD\uFFFD");
}

TEST_F(ShortcutsTest, aPortIsFreed) {
    start();
    EXPECT_EQ(free(3000), "Stopped shop on port 3000.");
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
}

TEST_F(ShortcutsTest, aPortThatListsHideIsFreedToo) {
    addHidden();
    start();
    ASSERT_EQ(store->visiblePorts().size(), 1u);
    EXPECT_EQ(free(631), "Stopped / on port 631.");
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{77, SIGTERM}));
}

TEST_F(ShortcutsTest, aServerThatStartedAfterTheLastScanIsFound) {
    start();
    addServer(43, 5173, "vite", "/home/me/blog");
    EXPECT_EQ(free(5173), "Stopped blog on port 5173.");
}

TEST_F(ShortcutsTest, aFreePortIsToldSo) {
    start();
    EXPECT_EQ(free(4000), "Nothing is listening on port 4000.");
    world.machine.end(42);
    EXPECT_EQ(free(3000), "Nothing is listening on port 3000.") << "gone since the last scan";
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(ShortcutsTest, beforeTheStartNothingIsFreed) {
    EXPECT_EQ(free(3000), "Tarnvale isn't ready yet — try again in a moment.");
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(ShortcutsTest, aFailureIsToldInTheStoresWords) {
    world.processes.refusals[42] = EPERM;
    start();
    EXPECT_EQ(free(3000), "No permission to stop node (PID 42).");
}

TEST_F(ShortcutsTest, aServerThatDoesNotEndStillHoldsThePort) {
    world.processes.deaf.insert(42);
    start();
    EXPECT_EQ(free(3000), "Port 3000 is still in use.");
}

TEST_F(ShortcutsTest, ofSeveralProcessesOnlyTheFirstIsStopped) {
    addServer(43, 3000, "node worker.js", "/home/me/other");
    start();
    EXPECT_EQ(free(3000), "Port 3000 is still in use.");
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
}

TEST_F(ShortcutsTest, aProcessThatOnlyGivesUpThePortCountsAsStopped) {
    world.processes.deaf.insert(42);
    start();
    std::optional<QString> dialog;
    const auto flow = [](QCoro::Task<QString> task, std::optional<QString> *place) -> QCoro::Task<> {
        *place = co_await task;
    }(freePort(store.get(), 3000), &dialog);
    quiesce();
    world.machine.sockets.clear();
    pass(500ms);
    EXPECT_EQ(dialog, "Stopped shop on port 3000.");
}

TEST_F(ShortcutsTest, aPortThatIsTakenAgainAtOnceIsInUse) {
    start();
    std::optional<QString> dialog;
    const auto flow = [](QCoro::Task<QString> task, std::optional<QString> *place) -> QCoro::Task<> {
        *place = co_await task;
    }(freePort(store.get(), 3000), &dialog);
    quiesce();
    addServer(44, 3000, "node next.js", "/home/me/next");
    pass(500ms);
    EXPECT_EQ(dialog, "Port 3000 is still in use.");
}

TEST_F(ShortcutsTest, onlyTheExpectedProcessIsStopped) {
    start();
    EXPECT_EQ(free(3000, 41), "Port 3000 is still in use.");
    EXPECT_EQ(free(4000, 41), "Nothing is listening on port 4000.");
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_EQ(free(3000, 42), "Stopped shop on port 3000.");
}

TEST_F(ShortcutsTest, aStoreThatGoesMeanwhileIsNotReady) {
    start();
    std::optional<QString> dialog;
    const auto flow = [](QCoro::Task<QString> task, std::optional<QString> *place) -> QCoro::Task<> {
        *place = co_await task;
    }(freePort(store.get(), 3000), &dialog);
    quiesce();
    store.reset();
    pass(500ms);
    EXPECT_EQ(dialog, "Tarnvale isn't ready yet — try again in a moment.");
}

TEST_F(ShortcutsTest, aClosedPortIsOpenedAllTheSame) {
    openPort(world.desktop, 4321);
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4321"));
}

TEST_F(ShortcutsTest, portsEndAt65535) {
    EXPECT_TRUE(isPortNumber(1));
    EXPECT_TRUE(isPortNumber(65535));
    EXPECT_FALSE(isPortNumber(0));
    EXPECT_FALSE(isPortNumber(65536));
    EXPECT_FALSE(isPortNumber(-3000));
}

} // namespace
} // namespace tarnvale
