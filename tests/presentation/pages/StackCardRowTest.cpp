#include "presentation/pages/StackCardRow.h"

#include "presentation/pages/PagesTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

const std::string home = "/home/me";

TEST(StackCardRows, theProgressCountsWhatIsUp) {
    const Stack shop = stackOf("shop", {"npm run dev", "make watch", "redis-server"});
    const std::set<Stack::Command> running{shop.commands[0], shop.commands[2], {"other", "/home/me/shop"}};
    const StackCardRow row = stackCardRow(shop, running, home);
    EXPECT_EQ(row.progress, QStringLiteral("2 of 3 running"));
    EXPECT_FALSE(row.isRunning);
    EXPECT_THAT(row.areUp, ElementsAre(true, false, true));
    EXPECT_THAT(row.commands, ElementsAre(QStringLiteral("npm run dev"), QStringLiteral("make watch"),
                                          QStringLiteral("redis-server")));
}

TEST(StackCardRows, aCommandCountsOnlyInItsFolder) {
    const Stack shop = stackOf("shop", {"npm run dev"});
    EXPECT_FALSE(stackCardRow(shop, {{"npm run dev", "/home/me/other"}}, home).isRunning);
    EXPECT_FALSE(stackCardRow(shop, {{"npm run dev ", "/home/me/shop"}}, home).isRunning);
    EXPECT_TRUE(stackCardRow(shop, {{"npm run dev", "/home/me/shop"}}, home).isRunning);
}

TEST(StackCardRows, aSharedFolderIsShown) {
    Stack shop = stackOf("shop", {"npm run dev", "make watch"});
    EXPECT_EQ(stackCardRow(shop, {}, home).folder, QStringLiteral("~/shop"));
    EXPECT_EQ(stackCardRow(shop, {}, home).folderTip, QStringLiteral("/home/me/shop"));
    shop.commands[1].cwd = "/home/me/other";
    EXPECT_EQ(stackCardRow(shop, {}, home).folder, QString());
    EXPECT_EQ(stackCardRow(stackOf("none", {}), {}, home).folder, QString());
}

TEST(StackCardRows, foldersBelowHomeAreShort) {
    struct Row {
        const char *path;
        const char *home;
        const char *shown;
    };
    for (const auto &[path, userHome, shown] :
         {Row{"/home/me", "/home/me", "~"}, Row{"/home/me/a/b", "/home/me", "~/a/b"},
          Row{"/home/mean/a", "/home/me", "/home/mean/a"}, Row{"/srv/a", "/home/me", "/srv/a"},
          Row{"/a", "/", "/a"}, Row{"/a", "", "/a"}, Row{"", "/home/me", ""}})
        EXPECT_EQ(shortFolder(path, userHome), QLatin1String(shown)) << path;
}

TEST(StackCardRows, oddTextsAreMadeFitToBeShown) {
    Stack shop = stackOf("sh\nop\x80", {std::string(100'000, 'x'), "a\tb\x1b[31m"});
    const StackCardRow row = stackCardRow(shop, {}, home);
    EXPECT_EQ(row.name, QStringLiteral("sh\uFFFDop\uFFFD"));
    EXPECT_EQ(row.commands[0].size(), 400);
    EXPECT_EQ(row.commands[1], QStringLiteral("a\uFFFDb\uFFFD[31m"));
}

TEST(StackCardRows, equalStacksMakeEqualRows) {
    const Stack shop = stackOf("shop", {"npm run dev"});
    EXPECT_EQ(stackCardRow(shop, {}, home), stackCardRow(shop, {}, home));
    EXPECT_NE(stackCardRow(shop, {}, home), stackCardRow(shop, {shop.commands[0]}, home));
}

} // namespace
} // namespace tarnvale
