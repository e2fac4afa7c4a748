#include "presentation/window/SidebarRow.h"

#include <QVariant>

#include <gmock/gmock.h>

#include <tuple>

namespace tarnvale {
namespace {

using testing::ElementsAre;

RowSection section(PortGroup group, int rows) {
    RowSection result{group, {}};
    for (int row = 0; row < rows; ++row)
        result.rows.push_back({.port = ListeningPort{.pid = 40 + row, .command = "node", .port = 3000 + row},
                               .otherPorts = {},
                               .isWeb = group == PortGroup::web});
    return result;
}

std::vector<std::string> described(const std::vector<SidebarRow> &rows) {
    std::vector<std::string> result;
    for (const SidebarRow &row : rows)
        result.push_back(row.section.toStdString() + "/" + row.key().toStdString() + "/" +
                         std::to_string(row.count));
    return result;
}

QVariant role(const SidebarRow &row, const char *name) {
    for (const ListRole<SidebarRow> &each : SidebarRow::roles())
        if (QByteArray(each.name) == name)
            return each.value(row);
    return {};
}

TEST(SidebarRow, aMachineWithEverythingOnIt) {
    const auto rows = sidebarRows(
        {section(PortGroup::web, 3), section(PortGroup::services, 2), section(PortGroup::other, 1)},
        {.watched = 4, .stacks = 5, .sites = 6});
    EXPECT_THAT(described(rows),
                ElementsAre("/overview/0", "Ports/allPorts/6", "Ports/web/3", "Ports/services/2",
                            "Ports/other/1", "Ports/watched/4", "Workspace/stacks/5", "Workspace/sites/6",
                            "Workspace/activity/0"));
}

TEST(SidebarRow, withoutSitesThereIsNoRowForThem) {
    const auto rows = sidebarRows({section(PortGroup::web, 1)}, {.watched = 0, .stacks = 0, .sites = 0});
    EXPECT_THAT(described(rows),
                ElementsAre("/overview/0", "Ports/allPorts/1", "Ports/web/1", "Ports/watched/0",
                            "Workspace/stacks/0", "Workspace/activity/0"));
}

TEST(SidebarRow, anEmptyMachineKeepsThePagesThatAreAlwaysThere) {
    EXPECT_THAT(described(sidebarRows({}, {})),
                ElementsAre("/overview/0", "Ports/allPorts/0", "Ports/watched/0", "Workspace/stacks/0",
                            "Workspace/activity/0"));
}

TEST(SidebarRow, aSectionWithoutRowsHasNoRow) {
    EXPECT_EQ(sidebarRows({section(PortGroup::services, 0)}, {}).size(), 5u);
}

TEST(SidebarRow, sectionsStandInTheOrderOfTheGroups) {
    const auto rows = sidebarRows({section(PortGroup::other, 1), section(PortGroup::web, 1)}, {});
    EXPECT_EQ(rows[2].item, SidebarItem::other);
    EXPECT_EQ(rows[3].item, SidebarItem::web);
}

TEST(SidebarRow, rowsAreCountedNotPorts) {
    RowSection web = section(PortGroup::web, 2);
    web.rows[0].otherPorts = {3001, 3002};
    EXPECT_EQ(rowCount({web, section(PortGroup::other, 1)}), 3);
    EXPECT_EQ(rowCount({}), 0);
}

TEST(SidebarRow, itsRolesAreThoseOfItsItem) {
    const std::vector<std::tuple<SidebarItem, const char *, const char *, const char *>> items{
        {SidebarItem::web, "web", "Web", "globe"},
        {SidebarItem::services, "services", "Databases & Services", "cylinder"},
        {SidebarItem::other, "other", "Other", "puzzlepiece"},
        {SidebarItem::overview, "overview", "Overview", "house"},
        {SidebarItem::allPorts, "allPorts", "All Ports", "network"},
        {SidebarItem::watched, "watched", "Watched", "bell"},
        {SidebarItem::stacks, "stacks", "Stacks", "square.stack.3d.up"},
        {SidebarItem::sites, "sites", "Sites", "link"},
        {SidebarItem::activity, "activity", "Activity", "clock"},
    };
    for (const auto &[item, key, label, symbol] : items) {
        const SidebarRow row{item, QStringLiteral("Ports"), 7};
        EXPECT_EQ(role(row, "itemKey").toString(), QLatin1String(key));
        EXPECT_EQ(role(row, "label").toString(), QLatin1String(label));
        EXPECT_EQ(role(row, "symbol").toString(), QLatin1String(symbol)) << key;
        EXPECT_EQ(role(row, "section").toString(), QStringLiteral("Ports"));
        EXPECT_EQ(role(row, "count").toInt(), 7);
    }
}

} // namespace
} // namespace tarnvale
