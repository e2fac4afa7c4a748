#include "discovery/ProcessDetails.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

std::string recording(std::string_view name) {
    return readRecording(TARNVALE_TESTS_FOLDER, "discovery", name);
}

std::optional<double> uptimeOf(const std::string &etime) {
    const auto details = parseProcessDetails("42 1 " + etime + " 0.0 100 node\n");
    return details.contains(42) ? std::optional(details.at(42).uptime) : std::nullopt;
}

ProcessDetails only(std::string_view text) {
    const auto details = parseProcessDetails(text);
    return details.size() == 1 ? details.begin()->second : ProcessDetails{.ppid = -1};
}

TEST(ProcessDetailsTest, aWholeListingIsRead) {
    const auto details = parseProcessDetails(recording("ps-details.txt"));
    ASSERT_THAT(details, SizeIs(7));
    EXPECT_EQ(details.at(861), (ProcessDetails{.ppid = 512,
                                               .uptime = 262800,
                                               .args = "/opt/homebrew/opt/postgresql@16/bin/postgres -D "
                                                       "/opt/homebrew/var/postgresql@16",
                                               .cpu = 0,
                                               .memoryKB = 14208}));
    EXPECT_EQ(details.at(912).args, "/opt/homebrew/opt/redis/bin/redis-server 127.0.0.1:6379  ")
        << "blanks at the end belong to the text";
    EXPECT_EQ(details.at(912).uptime, 10 * 86400 + 86399);
    EXPECT_EQ(details.at(4242), (ProcessDetails{.ppid = 4100,
                                                .uptime = 2702,
                                                .args = "node   server.js --title my  shop",
                                                .cpu = 12.5,
                                                .memoryKB = 98304}));
    EXPECT_EQ(details.at(4488).cpu, 99.9);
    EXPECT_EQ(details.at(6001), (ProcessDetails{.ppid = 4242, .uptime = 0, .args = "(node)"}));
}

TEST(ProcessDetailsTest, aDecimalCommaIsReadLikeAPoint) {
    const auto details = parseProcessDetails(recording("ps-details-comma.txt"));
    EXPECT_EQ(details.at(912).cpu, 0.3);
    EXPECT_EQ(details.at(4242).cpu, 12.5);
}

TEST(ProcessDetailsTest, aLineWithoutArgumentsIsKept) {
    EXPECT_EQ(only("123 1 00:10 0.0 100\n"),
              (ProcessDetails{.ppid = 1, .uptime = 10, .args = "", .memoryKB = 100}));
    EXPECT_EQ(only("123 1 00:10 0.0 100    \n").args, "");
}

TEST(ProcessDetailsTest, missingNumbersAreZero) {
    EXPECT_EQ(only("123 1 00:10\n"), (ProcessDetails{.ppid = 1, .uptime = 10}));
    EXPECT_EQ(only("123 1 00:10 1.5\n"), (ProcessDetails{.ppid = 1, .uptime = 10, .cpu = 1.5}));
}

TEST(ProcessDetailsTest, numbersThatCannotBeReadAreZero) {
    EXPECT_EQ(only("123 1 00:10 - many node\n"), (ProcessDetails{.ppid = 1, .uptime = 10, .args = "node"}));
    EXPECT_EQ(only("123 1 00:10 1.2.3 1.5 node\n"),
              (ProcessDetails{.ppid = 1, .uptime = 10, .args = "node"}));
    EXPECT_EQ(only("123 1 00:10 nan 99999999999999999999 node\n"),
              (ProcessDetails{.ppid = 1, .uptime = 10, .args = "node"}));
}

TEST(ProcessDetailsTest, agesAreRead) {
    struct Row {
        std::string etime;
        double seconds;
        std::string_view reason;
    };
    const std::array rows{
        Row{"45:02", 2702, "minutes"},
        Row{"05:07", 307, "leading zeros"},
        Row{"1:02:03", 3723, "hours"},
        Row{"3-01:00:00", 262800, "days"},
        Row{"2-00:00:01", 172801, "days and a second"},
        Row{"x-00:00:05", 5, "bad days count as none, and the time stays"},
        Row{"-00:05", 5, "an empty part is dropped, so there are no days"},
        Row{"2-", 2, "nor when only one part is left"},
        Row{"1-2-00:05", 5, "with three parts only the last counts"},
        Row{"07", 7, "seconds alone"},
        Row{"xx:05", 5, "bad minutes are none"},
        Row{"01:xx", 60, "bad seconds are none"},
        Row{"::", 0, "nothing but colons"},
        Row{"9:1:02:03", 3723, "what stands left of the hours is ignored"},
        Row{"0.5", 0.5, "fractions"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(uptimeOf(row.etime), row.seconds) << row.reason;
}

TEST(ProcessDetailsTest, linesWithoutPidParentOrAgeAreDropped) {
    struct Row {
        std::string_view line;
        std::string_view reason;
    };
    constexpr std::array rows{
        Row{"   ", "only blanks"},
        Row{"PID PPID ELAPSED %CPU RSS ARGS", "a header"},
        Row{"x 1 00:10 0.0 100 node", "a pid that is no number"},
        Row{"4294967296 1 00:10 0.0 100 node", "a pid beyond 32 bits"},
        Row{"42 x 00:10 0.0 100 node", "a parent that is no number"},
        Row{"42 2147483648 00:10 0.0 100 node", "a parent beyond 32 bits"},
        Row{"42", "nothing but a pid"},
        Row{"42 1", "no age"},
        Row{"42 1 - 0.0 100 node", "an age of nothing but a dash"},
        Row{"42 1 --- 0.0 100 node", "an age of nothing but dashes"},
        Row{"ps: illegal option", "an error text"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(parseProcessDetails(std::string(row.line) + "\n7 1 00:10 0.0 100 ok\n"),
                    testing::ElementsAre(testing::Key(7)))
            << row.reason;
}

TEST(ProcessDetailsTest, anyUnicodeWhiteSpaceSeparatesTheColumns) {
    EXPECT_EQ(only("\u00A0123\t1\u200300:10\u30000.5 100\u2028node  x"),
              (ProcessDetails{.ppid = 1, .uptime = 10, .args = "node  x", .cpu = 0.5, .memoryKB = 100}));
}

TEST(ProcessDetailsTest, aLaterLineReplacesAnEarlier) {
    EXPECT_EQ(only("42 1 00:10 0.0 100 old\n42 2 00:20 0.0 200 new\n").args, "new");
}

TEST(ProcessDetailsTest, aListingCutAtAnyByteIsNoMoreThanTheWhole) {
    const std::string whole = recording("ps-details.txt");
    for (std::size_t size = 0; size <= whole.size(); ++size)
        ASSERT_LE(parseProcessDetails(std::string(whole, 0, size)).size(), 7u) << size;
    EXPECT_THAT(parseProcessDetails(""), IsEmpty());
}

TEST(ProcessDetailsTest, theStartIsNowMinusTheAge) {
    const Instant now(std::chrono::hours(24 * 365 * 50));
    EXPECT_EQ(startOf({.uptime = 90}, now), now - 90s);
    EXPECT_EQ(startOf({.uptime = 0.25}, now), now - 250ms);
}

TEST(ProcessDetailsTest, anExactStartIsTakenAsItIs) {
    const Instant now(std::chrono::hours(24 * 365 * 50));
    EXPECT_EQ(startOf({.uptime = 90, .startedAt = now - 5s}, now), now - 5s);
}

TEST(ProcessDetailsTest, nonsensicalAgesDoNotOverflowTheClock) {
    const Instant now(std::chrono::hours(24 * 365 * 50));
    for (const double age : {1e300, -1e300, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(std::chrono::abs(startOf({.uptime = age}, now) - now), std::chrono::hours(24 * 365 * 100))
            << age;
    const auto uptime = uptimeOf("1" + std::string(300, '0') + "-00:00");
    ASSERT_TRUE(uptime);
    EXPECT_LT(startOf({.uptime = *uptime}, now), now);
}

} // namespace
} // namespace tarnvale
