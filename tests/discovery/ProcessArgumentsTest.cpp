#include "discovery/ProcessArguments.h"

#include "support/TestProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <random>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::string_view_literals;
using ProcessArguments::Info;
using testing::AllOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

/// A reply that begins with `count`, then `rest` to the letter.
std::string reply(std::int32_t count, std::string_view rest) {
    std::string bytes(sizeof count, '\0');
    std::memcpy(bytes.data(), &count, sizeof count);
    return bytes + std::string(rest);
}

/// An exact copy on the heap, so that a sanitizer sees every read beyond the end.
std::optional<Info> parseExactly(std::string_view bytes) {
    const std::vector<char> copy(bytes.begin(), bytes.end());
    return ProcessArguments::parse({copy.data(), copy.size()});
}

const std::string whole =
    reply(3, "/usr/bin/node\0\0\0\0node\0--title\0my shop\0PATH=/bin:/usr/bin\0A=b=c\0\0rest=1\0"sv);

TEST(ProcessArgumentsTest, aWholeReplyIsParsed) {
    const auto info = ProcessArguments::parse(whole);
    ASSERT_TRUE(info);
    EXPECT_THAT(info->arguments, ElementsAre("node", "--title", "my shop"));
    EXPECT_THAT(info->environment, UnorderedElementsAre(Pair("PATH", "/bin:/usr/bin"), Pair("A", "b=c")));
}

TEST(ProcessArgumentsTest, oneArgumentWithoutEnvironmentIsEnough) {
    EXPECT_EQ(ProcessArguments::parse(reply(1, "/bin/a\0a\0"sv)), (Info{{"a"}, {}}));
    EXPECT_EQ(ProcessArguments::parse(reply(1, "/bin/a\0a"sv)), (Info{{"a"}, {}}))
        << "the last NUL may be missing";
    EXPECT_EQ(ProcessArguments::parse(reply(1, "\0a\0"sv)), (Info{{"a"}, {}})) << "the path may be empty";
}

TEST(ProcessArgumentsTest, malformedRepliesGiveNothing) {
    struct Row {
        std::string bytes;
        std::string_view reason;
    };
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    const std::array rows{
        Row{"", "empty"},
        Row{reply(1, ""), "four bytes"},
        Row{std::string(3, '\0'), "less than a count"},
        Row{reply(1, "/bin/a"), "a path without an end"},
        Row{reply(1, "/bin/a\0"sv), "nothing behind the path"},
        Row{reply(1, "/bin/a\0\0\0\0"sv), "nothing but padding behind the path"},
        Row{reply(1, std::string(64, '\0')), "nothing but NULs"},
        Row{reply(2, "/bin/a\0a\0"sv), "fewer strings than the count says"},
        Row{reply(2, "/bin/a\0a\0\0b\0"sv), "an empty string ends the list"},
        Row{reply(0, "/bin/a\0a\0"sv), "a count of none"},
        Row{reply(-1, "/bin/a\0a\0"sv), "a count below none"},
        Row{reply(-largest - 1, "/bin/a\0a\0"sv), "the lowest count"},
        Row{reply(largest, "/bin/a\0a\0"sv), "the highest count"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseExactly(row.bytes), std::nullopt) << row.reason;
}

TEST(ProcessArgumentsTest, anEntryWithoutEqualsIsSkippedAndEndsNothing) {
    const auto info = ProcessArguments::parse(reply(1, "/a\0a\0ONE=1\0junk\0TWO=\0=three\0"sv));
    ASSERT_TRUE(info);
    EXPECT_THAT(info->environment,
                UnorderedElementsAre(Pair("ONE", "1"), Pair("TWO", ""), Pair("", "three")));
}

TEST(ProcessArgumentsTest, theLaterOfTwoValuesStays) {
    const auto info = ProcessArguments::parse(reply(1, "/a\0a\0KEY=1\0KEY=2\0"sv));
    ASSERT_TRUE(info);
    EXPECT_THAT(info->environment, ElementsAre(Pair("KEY", "2")));
}

TEST(ProcessArgumentsTest, invalidUtf8IsRepaired) {
    const auto info = ProcessArguments::parse(reply(2, "/a\0a\xFF\0\xC3\0K\xFF=\xE2\x82\0"sv));
    ASSERT_TRUE(info);
    EXPECT_THAT(info->arguments, ElementsAre("a\uFFFD", "\uFFFD"));
    EXPECT_THAT(info->environment, ElementsAre(Pair("K\uFFFD", "\uFFFD")));
}

TEST(ProcessArgumentsTest, aReplyCutAtAnyByteGivesAllItsArgumentsOrNothing) {
    const std::size_t lastArgument = whole.find("my shop");
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const auto info = parseExactly(std::string_view(whole).substr(0, size));
        ASSERT_EQ(info.has_value(), size > lastArgument) << size;
        if (info) {
            ASSERT_EQ(info->arguments.size(), 3u) << size;
            ASSERT_LE(info->environment.size(), 2u) << size;
        }
    }
}

TEST(ProcessArgumentsTest, anyBytesAreTaken) {
    std::mt19937 random(42);
    std::uniform_int_distribution<int> kind(0, 3);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int run = 0; run < 5000; ++run) {
        std::string bytes = reply(byte(random) % 8 - 1, "");
        for (int i = byte(random); i > 0; --i)
            bytes += kind(random) == 0 ? '\0' : static_cast<char>(byte(random));
        const auto info = parseExactly(bytes);
        ASSERT_TRUE(!info || !info->arguments.empty());
    }
}

TEST(ProcessArgumentsTest, aRunningProcessIsReadToTheLetter) {
    const std::vector<std::string> arguments{"/bin/sh", "-c",        "read line", "my sh", "",
                                             " a  b ",  "--x=\"y\"", "tab\t\n",   ""};
    const TestProcess process(arguments, std::vector<std::string>{"A=b=c", "EMPTY=", "TEXT=two words"});
    const auto info = ProcessArguments::read(process.pid());
    ASSERT_TRUE(info);
    EXPECT_EQ(info->arguments, arguments);
    EXPECT_THAT(info->environment,
                UnorderedElementsAre(Pair("A", "b=c"), Pair("EMPTY", ""), Pair("TEXT", "two words")));
}

TEST(ProcessArgumentsTest, aProcessWithoutEnvironmentIsRead) {
    const TestProcess process({"/bin/sh", "-c", "read line"}, std::vector<std::string>());
    const auto info = ProcessArguments::read(process.pid());
    ASSERT_TRUE(info);
    EXPECT_THAT(info->environment, IsEmpty());
}

TEST(ProcessArgumentsTest, invalidUtf8OfARunningProcessIsRepaired) {
    const TestProcess process({"/bin/sh", "-c", "read line", "a\xFF"}, std::vector<std::string>{"K=\xC3"});
    const auto info = ProcessArguments::read(process.pid());
    ASSERT_TRUE(info);
    EXPECT_EQ(info->arguments.back(), "a\uFFFD");
    EXPECT_THAT(info->environment, ElementsAre(Pair("K", "\uFFFD")));
}

TEST(ProcessArgumentsTest, aLongCommandLineIsReadWhole) {
    const std::string word(100'000, 'x');
    const TestProcess process({"/bin/sh", "-c", "read line", word, "last"});
    const auto info = ProcessArguments::read(process.pid());
    ASSERT_TRUE(info);
    EXPECT_THAT(info->arguments, ElementsAre("/bin/sh", "-c", "read line", word, "last"));
}

TEST(ProcessArgumentsTest, aProcessThatHasGoneGivesNothing) {
    TestProcess process({"/bin/true"});
    process.becomeZombie();
    EXPECT_EQ(ProcessArguments::read(process.pid()), std::nullopt) << "ended, but not reaped yet";
    ASSERT_TRUE(process.waitForEnd());
    EXPECT_EQ(ProcessArguments::read(process.pid()), std::nullopt);
}

TEST(ProcessArgumentsTest, numbersThatAreNoPidGiveNothing) {
    for (const Pid pid : {0, -1, impossiblePid, std::numeric_limits<Pid>::min()})
        EXPECT_EQ(ProcessArguments::read(pid), std::nullopt) << pid;
}

TEST(ProcessArgumentsTest, anotherUsersProcessGivesNothing) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user to look from";
    const TestProcess process(TestProcess::sleeper());
    constexpr uid_t nobody = 65534;
    ASSERT_TRUE(ProcessArguments::read(process.pid()));
    ASSERT_EQ(seteuid(nobody), 0);
    const auto info = ProcessArguments::read(process.pid());
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(info, std::nullopt);
}

} // namespace
} // namespace tarnvale
