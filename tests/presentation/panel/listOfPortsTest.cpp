// What the panel lists, and under which chips.

#include "presentation/panel/PanelTest.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ListOfPorts : public PanelTest {};

constexpr int filterOf(PortFilter filter) {
    return static_cast<int>(filter);
}

TEST_F(ListOfPorts, standsInSectionsWithTheirCounts) {
    addPostgres();
    addServer(42, 3000);
    addServer(43, 4000, "node api.js", "/home/me/api");
    answers[4000] = {Health::unknown(), {}};
    startList();
    open();
    scan();
    EXPECT_THAT(shown(), ElementsAre("3000", "5432", "4000"));
    EXPECT_EQ(list->sections(), QStringList({"Web", "Databases & Services", "Other"}));
    EXPECT_EQ(list->sectionCounts(), QList<int>({1, 1, 1}));
    EXPECT_EQ(list->portCount(), 3);
}

TEST_F(ListOfPorts, countsPortsAndNotRows) {
    addServer(42, 3000);
    world.machine.listen(42, 3001);
    world.machine.listen(42, 3002);
    world.machine.listen(42, 5432);
    startList();
    EXPECT_THAT(shown(), ElementsAre("3000", "5432"));
    EXPECT_EQ(list->portCount(), 4);
    EXPECT_EQ(list->rowCount(), 2);
    EXPECT_THAT(texts(list->rows(), "morePills"), ElementsAre("+1", ""));
    EXPECT_THAT(texts(list->rows(), "morePorts"), ElementsAre("3002", ""));
}

TEST_F(ListOfPorts, isSearched) {
    addServer(42, 3000);
    addServer(43, 4000, "node api.js", "/home/me/api");
    startList();
    list->setQuery(QStringLiteral("ShO"));
    EXPECT_THAT(shown(), ElementsAre("3000"));
    EXPECT_EQ(list->portCount(), 1);
    list->setQuery(QStringLiteral("  "));
    EXPECT_THAT(shown(), ElementsAre("3000", "4000"));
    list->setQuery(QStringLiteral("nothing of the kind"));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_THAT(list->sections(), IsEmpty());
    list->setQuery({});
    EXPECT_THAT(shown(), ElementsAre("3000", "4000"));
}

TEST_F(ListOfPorts, findsWhatTheRowsApplicationIsCalled) {
    addServer(42, 3000);
    addAgentsServer(43, 4000);
    startList();
    for (const char *query : {"some editor", "CLAUDE", "4000", "api"}) {
        list->setQuery(QLatin1String(query));
        EXPECT_THAT(shown(), ElementsAre("4000")) << query;
    }
}

TEST_F(ListOfPorts, offersOnlyChipsWithSomethingBehindThem) {
    startList();
    EXPECT_THAT(chips(), ElementsAre("All"));
    addServer(42, 3000);
    update();
    EXPECT_THAT(chips(), ElementsAre("All", "Web"));
    addPostgres();
    addAgentsServer(43, 4000);
    update();
    EXPECT_THAT(chips(), ElementsAre("All", "Agents", "Web", "Services"));
}

TEST_F(ListOfPorts, keepsTheOtherChipsWhenOneIsChosen) {
    addServer(42, 3000);
    addPostgres();
    startList();
    list->setFilter(filterOf(PortFilter::services));
    EXPECT_THAT(shown(), ElementsAre("5432"));
    EXPECT_THAT(chips(), ElementsAre("All", "Web", "Services"));
    list->setQuery(QStringLiteral("postgres"));
    EXPECT_THAT(chips(), ElementsAre("All", "Services")) << "the search narrows them";
}

TEST_F(ListOfPorts, showsAllAgainWhenAChipsLastPortGoes) {
    addServer(42, 3000);
    addPostgres();
    startList();
    list->setFilter(filterOf(PortFilter::services));
    const QSignalSpy changes(list.get(), &PortListController::filterChanged);
    world.machine.end(50);
    update();
    EXPECT_EQ(list->filter(), filterOf(PortFilter::all));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_THAT(shown(), ElementsAre("3000"));
}

TEST_F(ListOfPorts, knowsNoChipThatIsNotOffered) {
    addServer(42, 3000);
    startList();
    for (const int filter : {-1, 99, filterOf(PortFilter::agents)}) {
        list->setFilter(filter);
        EXPECT_EQ(list->filter(), filterOf(PortFilter::all)) << filter;
    }
}

TEST_F(ListOfPorts, losesItsSelectionToAChipAndToTyping) {
    addServer(42, 3000);
    startList();
    list->select(id(3000));
    list->setFilter(filterOf(PortFilter::web));
    EXPECT_EQ(list->selection(), QString());
    list->select(id(3000));
    list->setFilter(filterOf(PortFilter::web));
    EXPECT_EQ(list->selection(), QString()) << "a click on the chosen chip, too";
    list->select(id(3000));
    list->setQuery(QStringLiteral("s"));
    EXPECT_EQ(list->selection(), QString());
}

TEST_F(ListOfPorts, showsSystemProcessesWhenAsked) {
    world.machine.add({.pid = 60, .path = "/usr/sbin/cupsd", .args = "cupsd", .cwd = "/"});
    world.machine.listen(60, 631);
    startList();
    open();
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_FALSE(list->showAll());
    list->showSystemProcesses();
    quiesce();
    EXPECT_TRUE(list->showAll());
    EXPECT_THAT(shown(), ElementsAre("631"));
    EXPECT_EQ(list->stoppableCount(), 0) << "no developer's process";
}

TEST_F(ListOfPorts, stopsTogetherOnlyPlainProcessesOfDevelopers) {
    addServer(42, 3000);
    world.machine.listen(42, 3001);
    addServer(getpid(), 4000, "node own.js", "/home/me/own");
    addServer(44, 4500, "node unit.js", "/home/me/unit");
    world.machine.services[44] = {"unit.service", ServiceManager::systemd};
    addContainer(45, 8025, "mailhog · mailhog/mailhog:latest");
    addContainer(46, 8026, "unnamed");
    world.machine.publishedPorts.erase(8026);
    startList();
    EXPECT_THAT(shown(), Contains("4500"));
    EXPECT_THAT(shown(), Contains("8025"));
    EXPECT_EQ(list->stoppableCount(), 1) << "of one pid, on both its ports";
}

TEST_F(ListOfPorts, isNotWorkedOutWhileThePanelIsClosed) {
    startList();
    addServer(42, 3000);
    scan();
    EXPECT_THAT(shown(), IsEmpty());
    open();
    EXPECT_THAT(shown(), ElementsAre("3000"));
    addServer(43, 4000, "node api.js", "/home/me/api");
    scan();
    EXPECT_THAT(shown(), ElementsAre("3000", "4000"));
}

TEST_F(ListOfPorts, growsOlderWhileItIsShown) {
    addServer(42, 3000);
    startList();
    open();
    const std::string before = texts(list->rows(), "subtitle").front();
    pass(61s);
    EXPECT_NE(texts(list->rows(), "subtitle").front(), before);
    EXPECT_THAT(texts(list->rows(), "subtitle").front(), testing::HasSubstr("up 1m"));
}

TEST_F(ListOfPorts, doesNotWakeMoreOftenForBeingOpenedOften) {
    startList();
    open();
    pass(10s);
    const std::size_t once = world.clock.sleepers();
    for (int times = 0; times < 20; ++times) {
        close();
        open();
    }
    pass(10s);
    EXPECT_EQ(world.clock.sleepers(), once);
}

TEST_F(ListOfPorts, isNeverReset) {
    addServer(42, 3000);
    addPostgres();
    startList();
    open();
    const QAbstractItemModelTester tester(list->rows(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy resets(list->rows(), &QAbstractItemModel::modelReset);
    const QSignalSpy inserts(list->rows(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy removals(list->rows(), &QAbstractItemModel::rowsRemoved);
    addServer(43, 4000, "node api.js", "/home/me/api");
    scan();
    world.machine.end(42);
    scan();
    EXPECT_THAT(shown(), ElementsAre("4000", "5432"));
    EXPECT_EQ(inserts.count(), 1);
    EXPECT_EQ(removals.count(), 1);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(ListOfPorts, tellsOfAWatchedPortAndItsHealth) {
    addServer(42, 3000);
    answers[3000] = {Health::serverError(500), 12};
    startList();
    open();
    scan();
    store->toggleWatch(record(3000));
    quiesce();
    EXPECT_THAT(texts(list->rows(), "isWatched"), ElementsAre("true"));
    EXPECT_THAT(texts(list->rows(), "health"), ElementsAre("serverError"));
}

} // namespace
} // namespace tarnvale
