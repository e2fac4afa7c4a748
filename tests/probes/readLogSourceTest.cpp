#include "probes/readLogSource.h"

#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

constexpr std::size_t budget = 48'000;

class ReadLogSourceTest : public testing::Test {
protected:
    TemporaryFolder folder;
    FakeTools tools;

    std::string readFile(const std::string &content) {
        return readLogSource(LogSource::file(folder.write("a.log", content)), tools);
    }
};

TEST_F(ReadLogSourceTest, aFileWithinTheBudgetIsReadWhole) {
    EXPECT_EQ(readFile(""), "");
    EXPECT_EQ(readFile("one\ntwo"), "one\ntwo");
    const std::string full = "first\n" + std::string(budget - 6, 'x');
    EXPECT_EQ(readFile(full), full);
}

TEST_F(ReadLogSourceTest, oneByteMoreCostsTheFirstLine) {
    const std::string rest(budget - 5, 'x');
    EXPECT_EQ(readFile("first\n" + rest), rest);
}

TEST_F(ReadLogSourceTest, aLineLongerThanTheBudgetIsShownAsRead) {
    EXPECT_EQ(readFile(std::string(budget * 2, 'x')), std::string(budget, 'x'));
}

TEST_F(ReadLogSourceTest, aLineFeedAtTheVeryEndLeavesNothing) {
    EXPECT_EQ(readFile(std::string(budget * 2, 'x') + "\n"), "");
}

TEST_F(ReadLogSourceTest, aCutCharacterIsRepaired) {
    const std::string text = readFile("\xE2\x82\xAC" + std::string(budget - 1, 'x'));
    EXPECT_TRUE(text.starts_with("\uFFFDx")) << text.substr(0, 8);
}

TEST_F(ReadLogSourceTest, aBinaryFileBecomesText) {
    using namespace std::string_literals;
    EXPECT_EQ(readFile("a\xFF\0\xC0z"s), "a\uFFFD\0\uFFFDz"s);
}

TEST_F(ReadLogSourceTest, ofAGigabyteOnlyTheEndIsRead) {
    const std::string path = folder.write("huge.log", "");
    constexpr off_t gigabyte = 1 << 30;
    if (truncate(path.c_str(), gigabyte) != 0)
        GTEST_SKIP() << "no file of that size here";
    std::ofstream(path, std::ios::app) << "\nlast line\n";
    EXPECT_EQ(readLogSource(LogSource::file(path), tools), "last line\n");
}

TEST_F(ReadLogSourceTest, whatIsNoRegularFileIsEmptyAndNeverWaits) {
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    for (const std::string &path :
         {folder.path("pipe"), folder.path(), folder.path("missing"), std::string("/dev/zero")})
        EXPECT_EQ(readLogSource(LogSource::file(path), tools), "") << path;
}

TEST_F(ReadLogSourceTest, anUnreadableFileIsEmpty) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root can read everything";
    const std::string path = folder.write("secret.log", "text");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    EXPECT_EQ(readLogSource(LogSource::file(path), tools), "");
}

TEST_F(ReadLogSourceTest, aContainerIsAskedForItsLastLines) {
    tools.answers["/usr/bin/docker logs --tail 300 web"] = "hello\n";
    EXPECT_EQ(readLogSource(LogSource::docker("/usr/bin/docker", "web"), tools), "hello\n");
    EXPECT_THAT(tools.runs(), ElementsAre(ToolRun{.path = "/usr/bin/docker",
                                                  .arguments = {"logs", "--tail", "300", "web"},
                                                  .mergesError = true,
                                                  .timeout = std::chrono::seconds(4)}));
}

TEST_F(ReadLogSourceTest, aContainerThatCannotBeAskedIsEmpty) {
    EXPECT_EQ(readLogSource(LogSource::docker("/usr/bin/docker", "gone"), tools), "");
}

TEST_F(ReadLogSourceTest, theLinesOfAContainerHaveABound) {
    tools.answers["d logs --tail 300 web"] = std::string(3'000'000, 'x') + "\nend\n";
    EXPECT_EQ(readLogSource(LogSource::docker("d", "web"), tools), "end\n");
    tools.answers["d logs --tail 300 web"] = std::string(3'000'000, 'x');
    EXPECT_EQ(readLogSource(LogSource::docker("d", "web"), tools).size(), 1'000'000u);
}

TEST(LogSourceTest, twoAreEqualWhenTheyReadTheSame) {
    EXPECT_EQ(LogSource::file("/a"), LogSource::file("/a"));
    EXPECT_NE(LogSource::file("/a"), LogSource::file("/b"));
    EXPECT_NE(LogSource::file("/a"), LogSource::docker("/a", ""));
    EXPECT_NE(LogSource::docker("/a", "x"), LogSource::docker("/a", "y"));
    EXPECT_NE(LogSource::docker("/a", "x"), LogSource::docker("/b", "x"));
}

} // namespace
} // namespace tarnvale
