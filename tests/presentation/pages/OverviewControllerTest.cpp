#include "presentation/pages/OverviewController.h"

#include "presentation/pages/PagesTest.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class OverviewPageState : public PagesTest {
protected:
    void startPage() {
        start();
        page = std::make_unique<OverviewController>(
            *store, world.platform(),
            OverviewLinks{.groups =
                              [this] {
                                  ++readings;
                                  return groupedRows(store->visiblePorts(), webTestOf(*store));
                              },
                          .onSelect = [this](const ListeningPort &port) { selected.push_back(port.port); },
                          .showSection = [this](SidebarItem item) { pages.push_back(item); }});
        page->setShown(true);
    }

    void addDatabase(Pid pid, std::int64_t port) {
        world.machine.add({.pid = pid,
                           .path = "/usr/lib/postgresql/15/bin/postgres",
                           .args = "postgres -D data",
                           .cwd = "/var/lib/postgresql"});
        world.machine.listen(pid, port);
    }

    [[nodiscard]] QString id(std::int64_t port) const { return QString::fromStdString(record(port).id()); }

    std::unique_ptr<OverviewController> page;
    int readings = 0;
    std::vector<std::int64_t> selected;
    std::vector<SidebarItem> pages;
};

TEST_F(OverviewPageState, withNothingAtAllItIsQuiet) {
    startPage();
    EXPECT_EQ(page->summary(), QStringLiteral("Nothing is listening right now."));
    EXPECT_EQ(page->rowCount(), 0);
    EXPECT_EQ(page->webCount(), 0);
    EXPECT_EQ(page->serviceCount(), 0);
    EXPECT_EQ(page->exposedCount(), 0);
    EXPECT_EQ(page->webDetail(), QString());
    EXPECT_EQ(page->eventCount(), 0);
    EXPECT_EQ(page->stackCount(), 0);
}

TEST_F(OverviewPageState, oneServerIsOne) {
    addServer(42, 3000);
    startPage();
    EXPECT_EQ(page->summary(), QStringLiteral("1 server is listening on this Mac."));
}

TEST_F(OverviewPageState, theSummaryCountsRowsNotPorts) {
    addServer(42, 3000);
    world.machine.listen(42, 3001);
    addDatabase(50, 5432);
    startPage();
    EXPECT_EQ(page->rowCount(), 2);
    EXPECT_EQ(page->summary(), QStringLiteral("2 servers are listening on this Mac."));
}

TEST_F(OverviewPageState, theHourMakesTheGreeting) {
    struct Row {
        int hour;
        const char *greeting;
    };
    for (const auto &[hour, greeting] :
         {Row{0, "Good evening"}, Row{4, "Good evening"}, Row{5, "Good morning"}, Row{11, "Good morning"},
          Row{12, "Good afternoon"}, Row{16, "Good afternoon"}, Row{17, "Good evening"},
          Row{23, "Good evening"}})
        EXPECT_EQ(greetingAt(hour), QLatin1String(greeting)) << hour;
}

TEST_F(OverviewPageState, theGreetingIsThatOfTheClock) {
    startPage();
    const QString atNoon = page->greeting();
    world.clock.advance(12h);
    EXPECT_NE(page->greeting(), atNoon);
}

TEST_F(OverviewPageState, thePortsAreCountedByWhatTheyAre) {
    addServer(42, 5173, "node node_modules/.bin/vite");
    addServer(43, 3000, "node node_modules/.bin/next dev", "/home/me/landing");
    addDatabase(50, 5432);
    answers[5173] = {Health::responding(200), 5};
    answers[3000] = {Health::serverError(500), 5};
    startPage();
    store->setWindowVisible(true);
    scan();
    scan();
    EXPECT_EQ(page->webCount(), 2);
    EXPECT_EQ(page->webDetail(), QStringLiteral("1 responding"));
    EXPECT_EQ(page->serviceCount(), 1);
}

TEST_F(OverviewPageState, exposedPortsAreCountedOneByOne) {
    addServer(42, 3000);
    world.machine.listen(42, 3001, true);
    world.machine.listen(42, 3002, true);
    startPage();
    EXPECT_EQ(page->exposedCount(), 2);
}

TEST_F(OverviewPageState, aCardOpensItsPort) {
    addServer(42, 3000);
    startPage();
    page->showPort(id(3000));
    page->showPort(QStringLiteral("1:1"));
    EXPECT_THAT(selected, ElementsAre(3000));
}

TEST_F(OverviewPageState, theBrowserOpensWithoutSelecting) {
    addServer(42, 5173, "node node_modules/.bin/vite");
    startPage();
    page->openInBrowser(id(5173));
    quiesce();
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:5173"));
    EXPECT_THAT(selected, IsEmpty());
    EXPECT_EQ(page->selection(), QString());
}

TEST_F(OverviewPageState, blocksLeadToTheirPages) {
    startPage();
    for (const char *item : {"allPorts", "activity", "stacks", "no such page", ""})
        page->showPage(QLatin1String(item));
    EXPECT_THAT(pages, ElementsAre(SidebarItem::allPorts, SidebarItem::activity, SidebarItem::stacks));
}

TEST_F(OverviewPageState, theNewestSixEventsStand) {
    addEvents(9);
    startPage();
    EXPECT_EQ(page->eventCount(), 6);
    EXPECT_THAT(texts(page->events(), "ports"),
                ElementsAre("Started on 3000", "Stopped on 3001", "Started on 3002", "Stopped on 3003",
                            "Started on 3004", "Stopped on 3005"));
}

TEST_F(OverviewPageState, ofFiveStacksFourStand) {
    addStacks({stackOf("a", {"x"}), stackOf("b", {"x", "y"}), stackOf("c", {"x"}), stackOf("d", {"x"}),
               stackOf("e", {"x"})});
    startPage();
    EXPECT_EQ(page->stackCount(), 4);
    EXPECT_THAT(texts(page->stacks(), "name"), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(texts(page->stacks(), "commandCount"),
                ElementsAre("1 command", "2 commands", "1 command", "1 command"));
}

TEST_F(OverviewPageState, aStackIsStartedOnceHoweverOftenItIsPressed) {
    const Stack shop = stackOf("shop", {"npm run dev", "make watch"});
    addStacks({shop});
    startPage();
    page->startStack(idOf(shop));
    page->startStack(idOf(shop));
    pass(1s);
    page->startStack(idOf(shop));
    EXPECT_THAT(world.launcher.commands(), SizeIs(2));
    pass(2s);
    page->startStack(idOf(shop)); // nothing of it came up, so it may be tried again
    EXPECT_THAT(world.launcher.commands(), SizeIs(4));
    page->startStack(QStringLiteral("no id"));
    EXPECT_THAT(world.launcher.commands(), SizeIs(4));
}

TEST_F(OverviewPageState, aScanIsPlayedNotReset) {
    addServer(42, 3000);
    addServer(43, 3001, "node api.js", "/home/me/api");
    startPage();
    const QAbstractItemModelTester tester(page->rows(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int resets = 0;
    QObject::connect(page->rows(), &QAbstractItemModel::modelReset, page.get(), [&] { ++resets; });
    world.machine.end(42);
    addServer(44, 3002, "node other.js", "/home/me/other");
    scan();
    EXPECT_EQ(page->rowCount(), 2);
    EXPECT_EQ(resets, 0);
}

TEST_F(OverviewPageState, agesGrowWhileItIsShown) {
    addEvents(1);
    startPage();
    EXPECT_THAT(texts(page->events(), "age"), ElementsAre("now"));
    pass(10s);
    EXPECT_THAT(texts(page->events(), "age"), ElementsAre("10 sec. ago"));
}

TEST_F(OverviewPageState, nothingIsWorkedOutWhileItIsHidden) {
    addServer(42, 3000);
    startPage();
    page->setShown(false);
    const int before = readings;
    addServer(43, 3001, "node api.js", "/home/me/api");
    scan();
    pass(30s);
    page->scheduleUpdate();
    quiesce();
    EXPECT_EQ(readings, before);
    EXPECT_EQ(page->rowCount(), 1);
    page->setShown(true);
    EXPECT_EQ(page->rowCount(), 2);
}

TEST_F(OverviewPageState, oneScanIsWorkedOutOnce) {
    addServer(42, 3000);
    startPage();
    const int before = readings;
    for (const auto signal : {&PortStore::portsChanged, &PortStore::healthChanged, &PortStore::eventsChanged})
        Q_EMIT(store.get()->*signal)();
    quiesce();
    EXPECT_EQ(readings, before + 1);
}

TEST_F(OverviewPageState, theMenuOfACardIsThatOfItsPort) {
    addServer(42, 3000);
    startPage();
    std::vector<MenuEntry> menu;
    QObject::connect(page.get(), &PortRowsController::menuReady, page.get(),
                     [&](const QPointF &, const std::vector<MenuEntry> &entries) { menu = entries; });
    page->requestMenu(id(3000), {10, 20});
    quiesce();
    EXPECT_THAT(menu, testing::Not(IsEmpty()));
}

} // namespace
} // namespace tarnvale
