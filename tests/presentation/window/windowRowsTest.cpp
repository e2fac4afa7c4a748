#include "presentation/window/windowRows.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RowEntry row(Pid pid, std::int64_t port, std::vector<std::int64_t> others = {}) {
    return {.port = ListeningPort{.pid = pid, .command = "node", .port = port},
            .otherPorts = std::move(others),
            .isWeb = true};
}

std::vector<std::string> ids(const std::vector<RowSection> &groups) {
    std::vector<std::string> result;
    for (const RowSection &group : groups)
        for (const RowEntry &each : group.rows)
            result.push_back(each.id());
    return result;
}

class WindowRows : public testing::Test {
protected:
    const std::vector<RowSection> groups{
        {PortGroup::web, {row(1, 3000, {3001}), row(2, 4000)}},
        {PortGroup::services, {row(3, 5432)}},
        {PortGroup::other, {row(4, 9000)}},
    };
};

TEST_F(WindowRows, aWatchedPortKeepsItsRow) {
    EXPECT_THAT(ids(watchedRows(groups, {4000, 9000})), ElementsAre("2:4000", "4:9000"));
    EXPECT_EQ(watchedCount(groups, {4000, 9000}), 2);
}

TEST_F(WindowRows, aFurtherPortKeepsItsRowToo) {
    EXPECT_THAT(ids(watchedRows(groups, {3001})), ElementsAre("1:3000"));
}

TEST_F(WindowRows, groupsThatAreLeftEmptyAreDropped) {
    const auto kept = watchedRows(groups, {5432});
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].group, PortGroup::services);
}

TEST_F(WindowRows, whatIsWatchedButNotListeningHasNoRow) {
    EXPECT_THAT(watchedRows(groups, {1234}), IsEmpty());
    EXPECT_THAT(watchedRows(groups, {}), IsEmpty());
    EXPECT_EQ(watchedCount(groups, {}), 0);
}

TEST_F(WindowRows, thePagesThatListNoPortsGoWithAllOfThem) {
    for (const SidebarItem item : {SidebarItem::overview, SidebarItem::allPorts, SidebarItem::stacks,
                                   SidebarItem::sites, SidebarItem::activity})
        EXPECT_EQ(rowsOf(item, groups, {5432}), groups) << static_cast<int>(item);
}

TEST_F(WindowRows, aSectionsPageHasItsRowsAlone) {
    EXPECT_THAT(ids(rowsOf(SidebarItem::web, groups, {})), ElementsAre("1:3000", "2:4000"));
    EXPECT_THAT(ids(rowsOf(SidebarItem::services, groups, {})), ElementsAre("3:5432"));
    EXPECT_THAT(ids(rowsOf(SidebarItem::other, groups, {})), ElementsAre("4:9000"));
}

TEST_F(WindowRows, aSectionWithoutRowsHasAnEmptyPage) {
    EXPECT_THAT(rowsOf(SidebarItem::other, {groups[0]}, {}), IsEmpty());
}

TEST_F(WindowRows, theWatchedPageHasTheWatchedOnes) {
    EXPECT_THAT(ids(rowsOf(SidebarItem::watched, groups, {5432})), ElementsAre("3:5432"));
}

TEST(EmptyMessage, saysWhatWasSearchedFor) {
    for (const bool showsAll : {false, true})
        EXPECT_EQ(emptyMessage(SidebarItem::allPorts, QStringLiteral("shop"), showsAll),
                  QStringLiteral("No ports match “shop”"));
}

TEST(EmptyMessage, dependsOnWhetherSystemProcessesAreShown) {
    EXPECT_EQ(emptyMessage(SidebarItem::web, {}, true), QStringLiteral("Nothing is listening"));
    EXPECT_EQ(emptyMessage(SidebarItem::web, {}, false), QStringLiteral("No dev servers running"));
}

TEST(EmptyMessage, ofTheWatchedPageIsItsOwn) {
    for (const char *query : {"", "shop"})
        EXPECT_EQ(emptyMessage(SidebarItem::watched, QLatin1String(query), false),
                  QStringLiteral("No watched ports are running"));
}

TEST(EmptyMessage, aQueryThatLooksLikeAPlaceIsLeftAlone) {
    EXPECT_EQ(emptyMessage(SidebarItem::web, QStringLiteral("%1"), false),
              QStringLiteral("No ports match “%1”"));
}

TEST(ListsPorts, fivePagesDo) {
    for (const SidebarItem item : sidebarItems) {
        const bool isOther = item == SidebarItem::overview || item == SidebarItem::stacks ||
                             item == SidebarItem::sites || item == SidebarItem::activity;
        EXPECT_EQ(listsPorts(item), !isOther) << static_cast<int>(item);
    }
}

} // namespace
} // namespace tarnvale
