// The items of the window's sidebar: their names, symbols and keys.

#include "presentation/shared/SidebarItem.h"

#include <gtest/gtest.h>

#include <set>

namespace tarnvale {
namespace {

TEST(SidebarItem, everyItemIsFoundByItsKey) {
    std::set<QString> keys;
    for (const SidebarItem item : sidebarItems) {
        EXPECT_EQ(sidebarItem(key(item)), item);
        keys.insert(key(item));
    }
    EXPECT_EQ(keys.size(), sidebarItems.size());
}

TEST(SidebarItem, anotherTextIsNoItem) {
    EXPECT_FALSE(sidebarItem(QString()));
    EXPECT_FALSE(sidebarItem(QStringLiteral("Overview")));
}

TEST(SidebarItem, labelsAndSymbolsAreTheOnesThatUsersKnow) {
    EXPECT_EQ(label(SidebarItem::services), QStringLiteral("Databases & Services"));
    EXPECT_EQ(symbol(SidebarItem::services), QStringLiteral("cylinder"));
    EXPECT_EQ(label(SidebarItem::allPorts), QStringLiteral("All Ports"));
    EXPECT_EQ(symbol(SidebarItem::allPorts), QStringLiteral("network"));
    EXPECT_EQ(label(SidebarItem::activity), QStringLiteral("Activity"));
    EXPECT_EQ(symbol(SidebarItem::stacks), QStringLiteral("square.stack.3d.up"));
}

TEST(SidebarItem, everySectionOfPortsHasItsItem) {
    for (const PortGroup group : portGroups)
        EXPECT_EQ(portGroup(sidebarItem(group)), group);
    EXPECT_FALSE(portGroup(SidebarItem::watched));
}

} // namespace
} // namespace tarnvale
