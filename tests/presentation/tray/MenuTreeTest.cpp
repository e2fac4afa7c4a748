#include "presentation/tray/MenuTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

MenuEntry entry(const char *title, std::vector<MenuEntry> children = {}) {
    return {.title = QString::fromUtf8(title), .children = std::move(children)};
}

std::vector<int> idsOf(const MenuNode &node) {
    std::vector<int> ids;
    for (const MenuNode &child : node.children)
        ids.push_back(child.id);
    return ids;
}

TEST(MenuTreeTest, anEmptyMenuIsItsRoot) {
    const MenuTree tree;
    ASSERT_NE(tree.find(0), nullptr);
    EXPECT_TRUE(tree.root().children.empty());
    EXPECT_EQ(tree.find(1), nullptr);
    EXPECT_EQ(tree.find(-1), nullptr);
}

TEST(MenuTreeTest, anEqualMenuChangesNothing) {
    MenuTree tree;
    const std::vector menu{entry("Open"), menuDivider(), entry("shop", {entry("Stop")})};
    EXPECT_TRUE(tree.set(menu));
    const auto ids = idsOf(tree.root());
    EXPECT_FALSE(tree.set(menu));
    EXPECT_EQ(idsOf(tree.root()), ids);
}

TEST(MenuTreeTest, entriesKeepTheirNumbersWhereverTheyMove) {
    MenuTree tree;
    tree.set({entry("a"), entry("b"), entry("c")});
    const auto before = idsOf(tree.root());
    EXPECT_TRUE(tree.set({entry("c"), entry("x"), entry("a")}));
    const auto after = idsOf(tree.root());
    EXPECT_EQ(after[0], before[2]);
    EXPECT_EQ(after[2], before[0]);
    EXPECT_THAT(before, testing::Not(testing::Contains(after[1])));
}

TEST(MenuTreeTest, aNumberIsNeverGivenToAnotherEntry) {
    MenuTree tree;
    tree.set({entry("shop", {entry("Stop")})});
    const int stop = tree.root().children[0].children[0].id;
    tree.set({entry("api", {entry("Stop")})});
    EXPECT_EQ(tree.find(stop), nullptr);
    EXPECT_NE(tree.root().children[0].children[0].id, stop);
    tree.set({entry("shop", {entry("Stop")})});
    EXPECT_EQ(tree.find(stop), nullptr);
}

TEST(MenuTreeTest, twinsAreToldApartByTheirOrder) {
    MenuTree tree;
    tree.set({entry("node"), menuDivider(), entry("node"), menuDivider()});
    const auto before = idsOf(tree.root());
    EXPECT_TRUE(tree.set({entry("node"), menuDivider()}));
    EXPECT_THAT(idsOf(tree.root()), ElementsAre(before[0], before[1]));
}

TEST(MenuTreeTest, anEntryThatBecomesASubmenuIsAnother) {
    MenuTree tree;
    tree.set({entry("shop")});
    const int id = tree.root().children[0].id;
    EXPECT_TRUE(tree.set({entry("shop", {entry("Stop")})}));
    EXPECT_EQ(tree.find(id), nullptr);
}

TEST(MenuTreeTest, changedPropertiesAndActionsAreNoChangeOfShape) {
    MenuTree tree;
    int acted = 0;
    tree.set({menuAction("Stop", [&] { acted = 1; })});
    MenuEntry other = menuAction("Stop", [&] { acted = 2; });
    other.isEnabled = false;
    other.isChecked = true;
    EXPECT_FALSE(tree.set({other}));
    const MenuNode &node = tree.root().children[0];
    EXPECT_FALSE(node.isEnabled);
    EXPECT_EQ(node.properties.value("toggle-state"), 1);
    node.act();
    EXPECT_EQ(acted, 2);
}

TEST(MenuTreeTest, everyNodeIsVisitedBeforeThoseBelowIt) {
    MenuTree tree;
    tree.set({entry("a", {entry("b")}), entry("c")});
    QString titles;
    forEachNode(tree.root(), [&](const MenuNode &node) { titles += node.title; });
    EXPECT_EQ(titles, QStringLiteral("abc"));
}

} // namespace
} // namespace tarnvale
