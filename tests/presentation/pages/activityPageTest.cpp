// The page of what ran as its user meets it.

#include "presentation/pages/PageScene.h"
#include "presentation/pages/PagesTest.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;

std::function<void(DemoWorld &)> withEvents(const std::vector<PortEvent> &events) {
    return
        [events](DemoWorld &world) { world.platform.settings.values[keys::events] = encodeEvents(events); };
}

TEST(ActivityScreen, withoutEventsItTellsWhatWouldStandHere) {
    PageScene scene("empty");
    scene.showActivity();
    EXPECT_THAT(scene.texts(),
                IsSupersetOf({QStringLiteral("Activity"), QStringLiteral("No activity yet"),
                              QStringLiteral("Servers starting and stopping are recorded here, even while "
                                             "Tarnvale's window is closed.")}));
    EXPECT_FALSE(scene.find("PushButton", QStringLiteral("Clear"))->isEnabled());
}

TEST(ActivityScreen, sessionsStandInGroupsUnderTheirDays) {
    PageScene scene("empty",
                    withEvents({eventOf("shop", 3000, true, 5min), eventOf("api", 4000, false, 30min),
                                eventOf("api", 4000, true, 50min)}));
    scene.showActivity();
    EXPECT_THAT(scene.texts(),
                IsSupersetOf({QStringLiteral("2 runs from the last 3 starts and stops."),
                              QStringLiteral("Today"), QStringLiteral("shop"), QStringLiteral("api"),
                              QStringLiteral("5m"), QStringLiteral("20m"), QStringLiteral("1 run")}));
    const auto dots = scene.findAll("PulsingDot");
    ASSERT_THAT(dots, SizeIs(1)) << "only the shop runs";
    EXPECT_EQ(dots.front()->property("label").toString(), QStringLiteral("Running"));
}

TEST(ActivityScreen, thePickerChangesTheGrouping) {
    PageScene scene("empty",
                    withEvents({eventOf("shop", 3000, true, 5min), eventOf("api", 3000, false, 30min)}));
    scene.showActivity();
    QQuickItem *picker = scene.find("SegmentedPicker", QStringLiteral("Group"));
    ASSERT_NE(picker, nullptr);
    EXPECT_THAT(scene.findAll("SessionGroup"), SizeIs(2));
    picker->forceActiveFocus();
    scene.press(Qt::Key_Right);
    EXPECT_THAT(scene.findAll("SessionGroup"), SizeIs(1));
    EXPECT_THAT(scene.texts(), IsSupersetOf({QStringLiteral(":3000"), QStringLiteral("shop"),
                                             QStringLiteral("api"), QStringLiteral("2 runs")}));
    scene.press(Qt::Key_Left);
    EXPECT_THAT(scene.findAll("SessionGroup"), SizeIs(2));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(ActivityScreen, clearTakesTwoClicks) {
    PageScene scene("empty", withEvents({eventOf("shop", 3000, true, 5min)}));
    scene.showActivity();
    scene.click(scene.find("PushButton", QStringLiteral("Clear")));
    EXPECT_NE(scene.find("PushButton", QStringLiteral("Click to Clear")), nullptr);
    scene.pass(3s);
    EXPECT_THAT(scene.store->events(), SizeIs(1));
    scene.click(scene.find("PushButton", QStringLiteral("Clear")));
    scene.click(scene.find("PushButton", QStringLiteral("Click to Clear")));
    EXPECT_THAT(scene.store->events(), IsEmpty());
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("No activity yet")));
}

TEST(ActivityScreen, aRunThatGoesOnIsToldApart) {
    PageScene scene("empty", withEvents({eventOf("shop", 3000, true, 5min)}));
    scene.showActivity();
    const auto lines = scene.findAll("SessionLine");
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_TRUE(lines.front()->property("isRunning").toBool());
    scene.pass(60s);
    scene.draw();
    EXPECT_EQ(lines.front()->property("length").toString(), QStringLiteral("6m"));
    EXPECT_THAT(scene.findAll("SessionLine"), ElementsAre(lines.front())) << "the line itself stays";
}

TEST(ActivityScreen, aHundredEventsMakeOnlyWhatIsInSight) {
    std::vector<PortEvent> events;
    for (int number = 0; number < 100; ++number)
        events.push_back(eventOf("server " + std::to_string(number), 3000 + number, true, number * 1min));
    PageScene scene("empty", withEvents(events));
    scene.showActivity();
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("100 runs from the last 100 starts and stops.")));
    EXPECT_LT(scene.findAll("SessionGroup").size(), 30U);
    EXPECT_EQ(scene.find("PageHeader")->mapToScene(QPointF()).y(), 28);
}

} // namespace
} // namespace tarnvale
