#include "discovery/linux/ProcStat.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

// Recorded on Linux 6.18 from a shell, the name replaced by the one that a test asks for.
std::string statWithName(std::string_view name) {
    return "4242 (" + std::string(name) +
           ") S 4100 4242 4100 34816 4242 4194304 1093 57 0 2 31 12 0 0 20 0 3 0 5120 9043968 1024 "
           "18446744073709551615 94034 94035 140731 0 0 0 0 4 65538 0 0 0 17 1 0 0 0 0 0 94036 94037 94038 "
           "140732 140733 140734 140735 0\n";
}

TEST(ProcStatTest, everyFieldIsReadFromItsPlace) {
    const auto stat = parseProcStat(statWithName("server"));
    ASSERT_TRUE(stat);
    EXPECT_EQ(*stat, (ProcStat{.comm = "server",
                               .state = 'S',
                               .ppid = 4100,
                               .minorFaults = 1093,
                               .userTime = 31,
                               .systemTime = 12,
                               .threads = 3,
                               .startTime = 5120,
                               .virtualSize = 9043968,
                               .residentPages = 1024}));
    EXPECT_EQ(stat->processorTime(), 43u);
    EXPECT_FALSE(stat->isZombie());
}

TEST(ProcStatTest, theNameMayHoldAnyByte) {
    const std::vector<std::string> names{
        "",                       // prctl(2) takes an empty name
        ")",                      //
        "a) R 1 (b \n c",         // looks like the end of the name and a state
        "a b  c",                 //
        " ",                      //
        "fifteen bytes!!",        // as long as the kernel keeps
        "caf\xC3\xA9 \xFF\xFE",   // not UTF-8
        "((((",                   //
        "))) S 0 0 0",            //
        "\x1b[31mred\x07",        // terminal controls
        "kworker/u8:1-events_po", // kernel threads have longer ones
    };
    for (const std::string &name : names) {
        const auto stat = parseProcStat(statWithName(name));
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(stat->comm, name);
        EXPECT_EQ(stat->ppid, 4100) << name;
        EXPECT_EQ(stat->startTime, 5120u) << name;
    }
}

TEST(ProcStatTest, aFileCutShortTellsNothingThatTheWholeOneDoesNot) {
    const std::string whole = statWithName("a) b");
    const auto expected = parseProcStat(whole);
    ASSERT_TRUE(expected);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto stat = parseProcStat(std::string_view(whole).substr(0, length));
        EXPECT_EQ(stat.value_or(*expected), *expected) << "cut at byte " << length;
    }
    EXPECT_FALSE(parseProcStat(whole.substr(0, whole.find(" 5120") + 5)));
}

TEST(ProcStatTest, whatIsNotOfTheFormIsNothing) {
    struct Row {
        const char *content;
        const char *reason;
    };
    const Row rows[]{
        {"", "empty, as for a process that has just gone"},
        {"\n", "only a line feed"},
        {"42", "no name"},
        {"42 (a", "the name has no end"},
        {"42 )a( S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 5 1 1 1", "the brackets are the wrong way round"},
        {"42 (a) SS 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 5 1 1 1", "the state is two letters"},
        {"42 (a) S x 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 5 1 1 1", "the parent is no number"},
        {"42 (a) S 2147483648 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 5 1 1 1", "no pid is so large"},
        {"42 (a) S 1 1 1 0 -1 0 0 0 0 0 -1 0 0 0 20 0 1 0 5 1 1 1", "processor time below zero"},
        {"42 (a) S 1 1 1 0 -1 0 0 0 0 0 18446744073709551616 0 0 0 20 0 1 0 5 1 1 1", "beyond 64 bits"},
        {"42 (a) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 5x 1 1 1", "junk behind a number"},
        {"42 (a) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0", "the start time is missing"},
    };
    for (const Row &row : rows)
        EXPECT_FALSE(parseProcStat(row.content)) << row.reason;
}

TEST(ProcStatTest, theLargestNumbersAreRead) {
    const auto stat = parseProcStat("2147483647 (a) R 2147483647 1 1 0 -1 0 18446744073709551615 0 0 0 "
                                    "18446744073709551615 0 0 0 20 0 9223372036854775807 0 "
                                    "18446744073709551615 18446744073709551615 9223372036854775807 0\n");
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->ppid, 2147483647);
    EXPECT_EQ(stat->userTime, 18446744073709551615u);
    EXPECT_EQ(stat->residentPages, 9223372036854775807);
}

TEST(ProcStatTest, aProcessThatHasEndedIsAZombie) {
    for (const char state : {'Z', 'X'})
        EXPECT_TRUE((ProcStat{.comm = "a", .state = state}.isZombie())) << state;
    for (const char state : {'R', 'S', 'D', 'T', 't', 'I', 'P'})
        EXPECT_FALSE((ProcStat{.comm = "a", .state = state}.isZombie())) << state;
}

} // namespace
} // namespace tarnvale
