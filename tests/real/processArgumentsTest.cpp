#include "discovery/ProcessArguments.h"
#include "real/RealProcess.h"
#include "real/scanAs.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAreArray;

/// Words as a careless or hostile caller passes them, behind a shell that ignores them.
const std::vector<std::string> words{"/bin/sh",
                                     "-c",
                                     "sleep 60; :",
                                     "name",
                                     "two words",
                                     "",
                                     "",
                                     "new\nline",
                                     "\"quoted\"",
                                     "ünïcode",
                                     "bad\xff"
                                     "byte",
                                     ""};

/// Waits until `child` is the shell: it is once it has a child itself, while its name alone comes a moment
/// before its command line.
bool awaitShell(const RealProcess &child) {
    return eventually([&] { return !descendantsOf(child.pid()).empty(); });
}

TEST(RealProcessArgumentsTest, aRealChildsListsAreThoseThatItWasGiven) {
    const RealProcess child(
        words, {.environment = {"PATH=/usr/bin:/bin", "EMPTY=", "A=b=c", "LINES=one\ntwo", "BAD=\xff"},
                .hasOnlyThatEnvironment = true});
    ASSERT_TRUE(awaitShell(child)) << child.output();
    const auto info = ProcessArguments::read(child.pid());
    ASSERT_TRUE(info);
    std::vector<std::string> expected = words;
    expected[10] = "bad\xef\xbf\xbd"
                   "byte";
    EXPECT_THAT(info->arguments, ElementsAreArray(expected));
    EXPECT_EQ(info->environment, (std::map<std::string, std::string>{{"PATH", "/usr/bin:/bin"},
                                                                     {"EMPTY", ""},
                                                                     {"A", "b=c"},
                                                                     {"LINES", "one\ntwo"},
                                                                     {"BAD", "\xef\xbf\xbd"}}));
}

TEST(RealProcessArgumentsTest, aVeryLongCommandLineIsReadWhole) {
    std::vector<std::string> many = words;
    for (int i = 0; i < 200; ++i)
        many.push_back(std::string(1000, static_cast<char>('a' + i % 26)));
    const RealProcess child(many);
    ASSERT_TRUE(awaitShell(child)) << child.output();
    const auto info = ProcessArguments::read(child.pid());
    ASSERT_TRUE(info);
    ASSERT_EQ(info->arguments.size(), many.size());
    EXPECT_EQ(info->arguments.back(), many.back());
}

TEST(RealProcessArgumentsTest, aProcessThatHasGoneHasNone) {
    RealProcess child({"/bin/true"});
    const Pid pid = child.pid();
    ASSERT_TRUE(child.waitForEnd());
    EXPECT_EQ(ProcessArguments::read(pid), std::nullopt);
}

TEST(RealProcessArgumentsTest, anothersProcessHasNone) {
    if (getuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    const RealProcess child(words);
    ASSERT_TRUE(awaitShell(child)) << child.output();
    RealProcess reader(
        [&] {
            const bool isRead = ProcessArguments::read(child.pid()).has_value();
            const std::string answer = isRead ? "read\n" : "refused\n";
            static_cast<void>(!write(STDOUT_FILENO, answer.data(), answer.size()));
        },
        {.user = nobody});
    ASSERT_TRUE(reader.waitForEnd());
    EXPECT_EQ(reader.output(), "refused\n");
}

} // namespace
} // namespace tarnvale
