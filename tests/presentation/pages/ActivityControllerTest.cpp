#include "presentation/pages/ActivityController.h"

#include "presentation/pages/PagesTest.h"
#include "store/PortStore.h"
#include "store/settingsKeys.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ActivityPageState : public PagesTest {
protected:
    void startPage() {
        start();
        page = std::make_unique<ActivityController>(*store, world.platform());
        page->setShown(true);
    }

    std::unique_ptr<ActivityController> page;
};

TEST_F(ActivityPageState, oneEventHasNoSingularForm) {
    addEvents({eventOf("shop", 3000, true, 5min)});
    startPage();
    EXPECT_EQ(page->subtitle(), QStringLiteral("1 runs from the last 1 starts and stops."));
    EXPECT_EQ(page->eventCount(), 1);
}

TEST_F(ActivityPageState, withoutEventsThereIsNothing) {
    startPage();
    EXPECT_EQ(page->eventCount(), 0);
    EXPECT_EQ(page->groups()->rowCount(), 0);
    page->clearInTwoSteps();
    EXPECT_FALSE(page->confirmClear());
}

TEST_F(ActivityPageState, groupingChangesTheGroupsAndKeepsTheEvents) {
    addEvents({eventOf("shop", 3000, true, 5min), eventOf("api", 3000, false, 30min),
               eventOf("api", 3000, true, 50min), eventOf("shop", 4000, false, 70min)});
    startPage();
    EXPECT_EQ(page->subtitle(), QStringLiteral("3 runs from the last 4 starts and stops."));
    EXPECT_THAT(texts(page->groups(), "title"), ElementsAre("shop", "api"));
    EXPECT_THAT(texts(page->groups(), "runCount"), ElementsAre("2 runs", "1 run"));
    page->setGrouping(static_cast<int>(ActivityController::Grouping::port));
    EXPECT_THAT(texts(page->groups(), "title"), ElementsAre(":3000", ":4000"));
    EXPECT_THAT(role(page->groups(), 0, "names").toStringList(),
                ElementsAre(QStringLiteral("shop"), QStringLiteral("api")));
    EXPECT_THAT(store->events(), SizeIs(4));
    EXPECT_EQ(page->subtitle(), QStringLiteral("3 runs from the last 4 starts and stops."));
    for (const int other : {-1, 2, 1000}) {
        page->setGrouping(other);
        EXPECT_EQ(page->grouping(), 1);
    }
}

TEST_F(ActivityPageState, theLengthOfWhatRunsGrows) {
    addEvents({eventOf("shop", 3000, true, 5min)});
    startPage();
    const auto length = [this] { return role(page->groups(), 0, "lengths").toStringList(); };
    EXPECT_THAT(length(), ElementsAre(QStringLiteral("5m")));
    pass(60s);
    EXPECT_THAT(length(), ElementsAre(QStringLiteral("6m")));
    page->setShown(false);
    pass(120s);
    EXPECT_THAT(length(), ElementsAre(QStringLiteral("6m"))) << "nobody looks";
    page->setShown(true);
    EXPECT_THAT(length(), ElementsAre(QStringLiteral("8m")));
}

TEST_F(ActivityPageState, aStopEndsItsRunWithoutAReset) {
    addServer(42, 3000);
    startPage();
    addServer(43, 3001, "node api.js", "/home/me/api");
    scan();
    ASSERT_EQ(page->groups()->rowCount(), 1);
    EXPECT_TRUE(role(page->groups(), 0, "isRunning").toBool());
    const QAbstractItemModelTester tester(page->groups(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int changes = 0;
    QObject::connect(page->groups(), &QAbstractItemModel::modelReset, page.get(), [&] { changes += 100; });
    QObject::connect(page->groups(), &QAbstractItemModel::dataChanged, page.get(), [&] { ++changes; });
    pass(5s); // what happens at one moment has no order
    changes = 0;
    world.machine.end(43);
    scan();
    EXPECT_FALSE(role(page->groups(), 0, "isRunning").toBool());
    EXPECT_EQ(changes, 1);
}

TEST_F(ActivityPageState, clearAsksFirst) {
    addEvents(4);
    startPage();
    page->clearInTwoSteps();
    EXPECT_TRUE(page->confirmClear());
    pass(3s);
    EXPECT_FALSE(page->confirmClear());
    EXPECT_THAT(store->events(), SizeIs(4));
    page->clearInTwoSteps();
    pass(2s);
    page->clearInTwoSteps();
    quiesce();
    EXPECT_FALSE(page->confirmClear());
    EXPECT_THAT(store->events(), IsEmpty());
    EXPECT_FALSE(world.settings.values.contains(keys::events));
    EXPECT_EQ(page->eventCount(), 0);
    EXPECT_EQ(page->groups()->rowCount(), 0);
}

TEST_F(ActivityPageState, leavingThePageDisarms) {
    addEvents(4);
    startPage();
    page->clearInTwoSteps();
    page->setShown(false);
    EXPECT_FALSE(page->confirmClear());
    page->setShown(true);
    page->clearInTwoSteps();
    EXPECT_THAT(store->events(), SizeIs(4));
}

TEST_F(ActivityPageState, aHundredEventsStand) {
    addEvents(100);
    startPage();
    EXPECT_EQ(page->eventCount(), 100);
    EXPECT_EQ(page->subtitle(), QStringLiteral("100 runs from the last 100 starts and stops."));
    page->setGrouping(1);
    EXPECT_EQ(page->groups()->rowCount(), 100);
}

} // namespace
} // namespace tarnvale
