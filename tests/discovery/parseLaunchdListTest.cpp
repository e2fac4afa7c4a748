#include "discovery/parseLaunchdList.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tarnvale {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

auto job(Pid pid, std::string label) {
    return Pair(pid, ServiceLabel{std::move(label), ServiceManager::launchd});
}

TEST(ParseLaunchdListTest, runningJobsThatAreNotTheSystemsAreRead) {
    EXPECT_THAT(parseLaunchdList(readRecording(TARNVALE_TESTS_FOLDER, "discovery", "launchctl-list.txt")),
                UnorderedElementsAre(job(861, "homebrew.mxcl.postgresql@16"), job(912, "homebrew.mxcl.redis"),
                                     job(3307, "com.example.agent")));
}

TEST(ParseLaunchdListTest, linesThatAreNoRunningServiceGiveNothing) {
    struct Row {
        std::string_view line;
        std::string_view reason;
    };
    constexpr std::array rows{
        Row{"", "empty text"},
        Row{"PID\tStatus\tLabel", "the header"},
        Row{"-\t0\tcom.example.job", "a job that isn't running"},
        Row{"456\t0\tapplication.com.example.App.1234.5678", "a desktop application"},
        Row{"789\t0\tcom.apple.something", "the system's own"},
        Row{"123\tcom.example.job", "two pieces"},
        Row{"123\t0\t\t", "two pieces, once the empty ones are dropped"},
        Row{"123\t0\tcom.example\tjob", "four pieces"},
        Row{"123 0 com.example.job", "blanks are no tabs"},
        Row{"12x\t0\tcom.example.job", "a pid that is no number"},
        Row{"4294967296\t0\tcom.example.job", "a pid beyond 32 bits"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(parseLaunchdList(row.line), IsEmpty()) << row.reason;
}

TEST(ParseLaunchdListTest, onlyTheFrontOfALabelTellsTheSystemsJobs) {
    EXPECT_THAT(
        parseLaunchdList("1\t0\tcom.applepie\n2\t0\tmy.com.apple.x\n3\t0\tapplications.x\n4\t0\tCom.apple.x"),
        UnorderedElementsAre(job(1, "com.applepie"), job(2, "my.com.apple.x"), job(3, "applications.x"),
                             job(4, "Com.apple.x")));
}

TEST(ParseLaunchdListTest, emptyPiecesAreDroppedBeforeCounting) {
    EXPECT_THAT(parseLaunchdList("\t123\t\t-15\tcom.example.job\t"),
                UnorderedElementsAre(job(123, "com.example.job")));
}

TEST(ParseLaunchdListTest, theStatusPlaysNoPart) {
    EXPECT_THAT(parseLaunchdList("123\tsomething\tcom.example.job"),
                UnorderedElementsAre(job(123, "com.example.job")));
}

TEST(ParseLaunchdListTest, aLaterLineReplacesAnEarlier) {
    EXPECT_THAT(parseLaunchdList("123\t0\told.job\n123\t0\tnew.job\n"),
                UnorderedElementsAre(job(123, "new.job")));
}

TEST(ParseLaunchdListTest, aListingCutAtAnyByteIsNoMoreThanTheWhole) {
    const std::string whole = readRecording(TARNVALE_TESTS_FOLDER, "discovery", "launchctl-list.txt");
    for (std::size_t size = 0; size <= whole.size(); ++size)
        // A cut in "com.apple." or "application." leaves a label of another kind: one more at most.
        ASSERT_LE(parseLaunchdList(std::string(whole, 0, size)).size(), 4u) << size;
}

} // namespace
} // namespace tarnvale
