#include "store/PortSession.h"

#include <QDateTime>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Noon of a day in the user's calendar.
Instant noonOf(int day) {
    const QDateTime noon(QDate(2025, 3, day), QTime(12, 0));
    return Instant(std::chrono::milliseconds(noon.toMSecsSinceEpoch()));
}

const Instant noon = noonOf(1);

PortEvent event(bool started, Instant date, const std::string &name = "shop", std::int64_t port = 3000) {
    return {.id = QUuid::createUuid(),
            .date = date,
            .port = port,
            .otherPorts = {},
            .pid = 42,
            .name = name,
            .started = started};
}

TEST(PortSessionTest, aStartAndItsStopAreOneSession) {
    const PortEvent begin = event(true, noon);
    const auto result = sessions({event(false, noon + 1h), begin});
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].id, begin.id);
    EXPECT_EQ(result[0].name, "shop");
    EXPECT_THAT(result[0].ports, ElementsAre(3000));
    EXPECT_EQ(result[0].start, noon);
    EXPECT_EQ(result[0].end, noon + 1h);
    EXPECT_FALSE(result[0].isRunning);
}

TEST(PortSessionTest, aStartWithoutAStopRuns) {
    const auto result = sessions({event(true, noon)});
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].end, std::nullopt);
    EXPECT_TRUE(result[0].isRunning);
}

TEST(PortSessionTest, aStopWithoutAStartHasOnlyItsEnd) {
    const auto result = sessions({event(false, noon)});
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].start, std::nullopt);
    EXPECT_EQ(result[0].end, noon);
    EXPECT_FALSE(result[0].isRunning);
}

TEST(PortSessionTest, aSecondStartLeavesTheFirstWithoutAnEnd) {
    const auto result = sessions({event(true, noon), event(true, noon + 1h)});
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0].start, noon + 1h);
    EXPECT_TRUE(result[0].isRunning);
    EXPECT_EQ(result[1].end, std::nullopt);
    EXPECT_FALSE(result[1].isRunning);
}

TEST(PortSessionTest, otherNamesAndPortsDoNotCloseIt) {
    const auto result = sessions(
        {event(true, noon), event(false, noon + 1min, "blog"), event(false, noon + 2min, "shop", 3001)});
    ASSERT_EQ(result.size(), 3u);
    EXPECT_TRUE(result[2].isRunning);
}

TEST(PortSessionTest, theOpeningEventsPortsAreTheSessions) {
    PortEvent begin = event(true, noon);
    begin.otherPorts = {{3001, 5173}};
    const auto result = sessions({begin, event(false, noon + 1s)});
    ASSERT_EQ(result.size(), 1u);
    EXPECT_THAT(result[0].ports, ElementsAre(3000, 3001, 5173));
}

TEST(PortSessionTest, theNewestComesFirst) {
    const auto result =
        sessions({event(true, noon, "a"), event(false, noon + 2h, "b"), event(true, noon + 1h, "c")});
    ASSERT_EQ(result.size(), 3u);
    EXPECT_EQ(result[0].name, "b") << "by its end, since its start isn't known";
    EXPECT_EQ(result[1].name, "c");
    EXPECT_EQ(result[2].name, "a");
}

TEST(PortSessionTest, theGivenOrderDoesNotMatter) {
    const PortEvent begin = event(true, noon);
    const PortEvent end = event(false, noon + 1h);
    EXPECT_EQ(sessions({begin, end}), sessions({end, begin}));
}

TEST(GroupSessionsTest, nothingIsNoDay) {
    EXPECT_THAT(groupSessions({}, false), IsEmpty());
}

TEST(GroupSessionsTest, sessionsOfADayAreGroupedByName) {
    const auto all = sessions({event(true, noon, "shop"), event(true, noon + 1min, "blog"),
                               event(false, noon + 2min, "shop"), event(true, noon + 3min, "shop")});
    const auto days = groupSessions(all, false);
    ASSERT_EQ(days.size(), 1u);
    EXPECT_EQ(days[0].day, QDate(2025, 3, 1));
    ASSERT_EQ(days[0].groups.size(), 2u);
    EXPECT_EQ(days[0].groups[0].title, "shop") << "in the order of the first session";
    EXPECT_EQ(days[0].groups[0].sessions.size(), 2u);
    EXPECT_EQ(days[0].groups[1].title, "blog");
}

TEST(GroupSessionsTest, orByTheLowestPort) {
    const auto days = groupSessions(
        sessions({event(true, noon, "shop", 3000), event(true, noon + 1s, "blog", 3000)}), true);
    ASSERT_EQ(days.size(), 1u);
    ASSERT_EQ(days[0].groups.size(), 1u);
    EXPECT_EQ(days[0].groups[0].title, ":3000");
    EXPECT_EQ(days[0].groups[0].sessions.size(), 2u);
}

TEST(GroupSessionsTest, aSessionWithoutPortsIsUnderZero) {
    const auto days = groupSessions({{.name = "x", .ports = {}, .start = noon, .end = {}}}, true);
    ASSERT_EQ(days.size(), 1u);
    EXPECT_EQ(days[0].groups[0].title, ":0");
}

TEST(GroupSessionsTest, eachCalendarDayIsASection) {
    const auto days = groupSessions(sessions({event(true, noonOf(1), "a"), event(false, noonOf(2), "b"),
                                              event(true, noonOf(2) + 11h, "c")}),
                                    false);
    ASSERT_EQ(days.size(), 2u);
    EXPECT_EQ(days[0].day, QDate(2025, 3, 2));
    EXPECT_EQ(days[0].groups.size(), 2u);
    EXPECT_EQ(days[1].day, QDate(2025, 3, 1));
}

TEST(GroupSessionsTest, onlyTheLastSectionIsLookedAt) {
    PortSession one{.name = "a", .ports = {1}, .start = noonOf(2), .end = {}};
    PortSession two = one;
    two.start = noonOf(1);
    EXPECT_EQ(groupSessions({one, two, one}, false).size(), 3u);
}

TEST(GroupEventsByDayTest, eventsKeepTheirOrder) {
    const std::vector<PortEvent> events{event(true, noonOf(2), "b"), event(false, noonOf(2) - 1h, "c"),
                                        event(true, noonOf(1), "a")};
    const auto days = groupEventsByDay(events);
    ASSERT_EQ(days.size(), 2u);
    EXPECT_EQ(days[0].day, QDate(2025, 3, 2));
    EXPECT_THAT(days[0].events, ElementsAre(events[0], events[1]));
    EXPECT_THAT(days[1].events, ElementsAre(events[2]));
    EXPECT_THAT(groupEventsByDay({}), IsEmpty());
}

} // namespace
} // namespace tarnvale
