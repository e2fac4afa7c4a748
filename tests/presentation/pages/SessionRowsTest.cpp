#include "presentation/pages/SessionRows.h"

#include "presentation/pages/PagesTest.h"
#include "presentation/shared/relativeTime.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

Instant at(int day, int hour, int minute) {
    const QDateTime time(QDate(2025, 3, day), QTime(hour, minute));
    return Instant(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

PortSession session(std::optional<Instant> start, std::optional<Instant> end, bool isRunning = false) {
    return {.id = QUuid::createUuid(),
            .name = "shop",
            .ports = {3000},
            .start = start,
            .end = end,
            .isRunning = isRunning};
}

const QLocale german(QLocale::German, QLocale::Germany);

std::string range(const PortSession &session) {
    return timeRange(session, german).toStdString();
}

TEST(SessionTexts, aRangeTellsWhatIsKnown) {
    EXPECT_EQ(range(session(at(1, 10, 4), at(1, 10, 31))), "10:04 – 10:31");
    EXPECT_EQ(range(session(at(1, 10, 4), {}, true)), "10:04 – now");
    EXPECT_EQ(range(session(at(1, 10, 4), {})), "From 10:04");
    EXPECT_EQ(range(session({}, at(1, 10, 31))), "Until 10:31");
    EXPECT_EQ(range(session({}, {})), "");
}

TEST(SessionTexts, anEndOnAnotherDayBearsItsDate) {
    EXPECT_EQ(range(session(at(1, 23, 10), at(2, 1, 2))), "23:10 – 02.03.25 01:02");
}

TEST(SessionTexts, aRangeSpeaksTheUsersLanguage) {
    const QLocale american(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(timeRange(session(at(1, 10, 4), at(1, 13, 31)), american),
              QStringLiteral("%1 – %2").arg(american.toString(QTime(10, 4), QLocale::ShortFormat),
                                            american.toString(QTime(13, 31), QLocale::ShortFormat)));
}

TEST(SessionTexts, aLengthIsThatOfTheRun) {
    const Instant now = at(1, 12, 0);
    EXPECT_EQ(sessionLength(session(at(1, 10, 4), at(1, 10, 31)), now), QStringLiteral("27m"));
    EXPECT_EQ(sessionLength(session(at(1, 10, 4), {}, true), now), QStringLiteral("1h 56m"));
    EXPECT_EQ(sessionLength(session(at(1, 10, 4), {}), now), QString()) << "its end wasn't seen";
    EXPECT_EQ(sessionLength(session({}, at(1, 10, 31)), now), QString());
    EXPECT_EQ(sessionLength(session(at(1, 10, 31), at(1, 10, 4)), now), QStringLiteral("0s"))
        << "the clock was set back";
}

TEST(SessionTexts, groupsCountTheirRuns) {
    const Instant now = at(1, 12, 0);
    const SessionDay day{
        .day = QDate(2025, 3, 1),
        .groups = {{"shop", {session(at(1, 11, 0), {}, true), session(at(1, 9, 0), at(1, 10, 0))}},
                   {"api", {session(at(1, 8, 0), at(1, 8, 30))}}}};
    const auto rows = sessionGroupRows({day}, now);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].day, QStringLiteral("Today"));
    EXPECT_EQ(rows[0].runCount, QStringLiteral("2 runs"));
    EXPECT_TRUE(rows[0].isRunning);
    EXPECT_THAT(rows[0].areRunning, ElementsAre(true, false));
    EXPECT_THAT(rows[0].lengths, ElementsAre(QStringLiteral("1h 0m"), QStringLiteral("1h 0m")));
    EXPECT_EQ(rows[1].runCount, QStringLiteral("1 run"));
    EXPECT_FALSE(rows[1].isRunning);
}

TEST(SessionTexts, oneTitleOnTwoDaysIsTwoGroups) {
    const SessionGroup group{"shop", {session(at(1, 11, 0), {})}};
    const auto rows =
        sessionGroupRows({{QDate(2025, 3, 2), {group}}, {QDate(2025, 3, 1), {group}}}, at(2, 12, 0));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_NE(rows[0].key(), rows[1].key());
    EXPECT_EQ(rows[1].day, QStringLiteral("Yesterday"));
}

TEST(SessionTexts, oddNamesAreMadeFitToBeShown) {
    SessionGroup group{"a\nb", {session(at(1, 11, 0), {})}};
    group.sessions.front().name = std::string(10'000, 'x');
    const auto rows = sessionGroupRows({{QDate(2025, 3, 1), {group}}}, at(1, 12, 0));
    EXPECT_EQ(rows[0].title, QStringLiteral("a\uFFFDb"));
    EXPECT_EQ(rows[0].names[0].size(), 400);
}

} // namespace
} // namespace tarnvale
