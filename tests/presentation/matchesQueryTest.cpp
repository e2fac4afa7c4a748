#include "presentation/matchesQuery.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const ListeningPort shop{.pid = 4711,
                         .command = "node",
                         .port = 5173,
                         .cwd = "/home/me/shop",
                         .args = "node vite --secret",
                         .service = "shop-web.service",
                         .hostApp = "/usr/share/applications/Some Editor.desktop",
                         .agent = "Claude Code"};

TEST(MatchesQueryTest, aBlankQueryMatchesEverything) {
    for (const char *query : {"", " ", "   ", "\t\n", "\u00a0\u2003"}) {
        EXPECT_TRUE(matchesQuery(shop, QString::fromUtf8(query))) << query;
        EXPECT_TRUE(matchesQuery({}, QString::fromUtf8(query))) << query;
    }
}

TEST(MatchesQueryTest, everyFieldIsSearchedInAnyCase) {
    for (const char *query : {"5173", "17", "SHOP", "hop", "Node", "web.SERVICE", "some editor", "CLAUDE",
                              "claude code", "  shop\t", "e c"})
        EXPECT_TRUE(matchesQuery(shop, QString::fromUtf8(query))) << query;
}

TEST(MatchesQueryTest, nothingElseIsSearched) {
    for (const char *query : {"4711", "secret", "vite", "/home", "desktop", "applications", "shop node",
                              "shop  web", "51730", "5173:", ".*", "n?de"})
        EXPECT_FALSE(matchesQuery(shop, QString::fromUtf8(query))) << query;
    EXPECT_FALSE(matchesQuery({}, "x"));
}

TEST(MatchesQueryTest, theNameSearchedIsTheOneThatIsListed) {
    ListeningPort port{.command = "php", .port = 8000, .cwd = "/src/shop", .args = "php artisan serve"};
    EXPECT_TRUE(matchesQuery(port, "shop"));
    EXPECT_FALSE(matchesQuery(port, "laravel"));
    port.cwd = "/usr/bin";
    EXPECT_TRUE(matchesQuery(port, "laravel"));
    EXPECT_FALSE(matchesQuery(port, "bin"));
    port.cwd = "/src/shop";
    port.container = "db · postgres:16";
    EXPECT_TRUE(matchesQuery(port, "b · POST"));
    EXPECT_FALSE(matchesQuery(port, "shop"));
}

TEST(MatchesQueryTest, lettersOfEveryAlphabetHaveBothCases) {
    const ListeningPort port{.command = "node", .port = 1, .cwd = "/src/Übung ΣΊΣΥΦΟΣ Ёлка"};
    for (const char *query : {"übung", "ÜBUNG", "σίσυφο", "ёлка", "ЁЛКА"})
        EXPECT_TRUE(matchesQuery(port, QString::fromUtf8(query))) << query;
    EXPECT_FALSE(matchesQuery(port, QString::fromUtf8("ubung")));
}

TEST(MatchesQueryTest, anAccentCanBeWrittenApart) {
    const ListeningPort port{.command = "node", .port = 1, .cwd = "/src/Cafe\u0301"};
    EXPECT_TRUE(matchesQuery(port, QString::fromUtf8("caf\u00c9")));
    EXPECT_TRUE(matchesQuery({.command = "caf\u00e9"}, QString::fromUtf8("CAFE\u0301")));
}

TEST(MatchesQueryTest, bytesThatAreNoTextHarmNothing) {
    const ListeningPort port{.command = "no\xff"
                                        "de\xc3",
                             .port = 1,
                             .cwd = "/src/\xf0\x9f"};
    EXPECT_TRUE(matchesQuery(port, "de"));
    EXPECT_FALSE(matchesQuery(port, "node"));
}

TEST(MatchesQueryTest, theApplicationIsFoundByTheNameThatTheDesktopGivesIt) {
    const ApplicationName name = [](const std::string &path) {
        return path == *shop.hostApp ? std::string("Éditeur") : std::string();
    };
    EXPECT_TRUE(matchesQuery(shop, QString::fromUtf8("éDIT"), name));
    EXPECT_FALSE(matchesQuery(shop, "some", name));
}

TEST(MatchesQueryTest, theApplicationsNameIsAskedForOnlyWhenThereIsOne) {
    int asked = 0;
    const ApplicationName name = [&](const std::string &) {
        ++asked;
        return std::string("Editor");
    };
    EXPECT_FALSE(matchesQuery({.command = "node"}, "editor", name));
    EXPECT_EQ(asked, 0);
}

} // namespace
} // namespace tarnvale
