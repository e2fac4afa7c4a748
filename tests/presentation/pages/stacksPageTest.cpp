// The page of the stacks as its user meets it.

#include "presentation/pages/PageScene.h"
#include "presentation/pages/PagesTest.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

std::function<void(DemoWorld &)> withStacks(const std::vector<Stack> &stacks) {
    return
        [stacks](DemoWorld &world) { world.platform.settings.values[keys::stacks] = encodeStacks(stacks); };
}

TEST(StacksScreen, withoutStacksItTellsHowToGetOne) {
    PageScene scene("few");
    scene.showStacks();
    EXPECT_THAT(scene.texts(),
                IsSupersetOf({QStringLiteral("Stacks"), QStringLiteral("No stacks yet"),
                              QStringLiteral("Start a whole project — server, queue, Vite — in one click."),
                              QStringLiteral("New from Folder…")}));
}

TEST(StacksScreen, aCardShowsWhatRuns) {
    PageScene scene("few", withStacks({stackOf("shop", {"node node_modules/.bin/vite", "make watch"})}));
    scene.showStacks();
    EXPECT_THAT(
        scene.texts(),
        IsSupersetOf({QStringLiteral("shop"), QStringLiteral("1 of 2 running"), QStringLiteral("Start"),
                      QStringLiteral("node node_modules/.bin/vite"), QStringLiteral("make watch"),
                      QStringLiteral("/home/me/shop"), QStringLiteral("Delete")}));
    scene.click(scene.find("PushButton", QStringLiteral("Start")));
    EXPECT_THAT(scene.world.platform.launcher.commands(), ElementsAre("make watch"));
}

TEST(StacksScreen, whatRunsWhollySaysSoAndStartsNothing) {
    PageScene scene("few", withStacks({stackOf("shop", {"node node_modules/.bin/vite"})}));
    scene.showStacks();
    scene.click(scene.find("PushButton", QStringLiteral("Running")));
    scene.pass(2s);
    EXPECT_THAT(scene.world.platform.launcher.commands(), IsEmpty());
}

TEST(StacksScreen, deleteTakesTwoClicks) {
    PageScene scene("empty", withStacks({stackOf("shop", {"x"}), stackOf("docs", {"y"})}));
    scene.showStacks();
    scene.click(scene.find("ArmedButton"));
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral("Click to delete")));
    scene.pass(3s);
    scene.draw();
    EXPECT_THAT(scene.texts(), testing::Not(Contains(QStringLiteral("Click to delete"))));
    scene.click(scene.find("ArmedButton"));
    scene.click(scene.find("ArmedButton"));
    ASSERT_THAT(scene.store->stacks(), SizeIs(1));
    EXPECT_EQ(scene.store->stacks().front().name, "docs");
    EXPECT_EQ(scene.warnings(), "");
}

TEST(StacksScreen, theListBeginsAtItsHead) {
    std::vector<Stack> stacks;
    for (int number = 0; number < 50; ++number)
        stacks.push_back(stackOf("stack " + std::to_string(number), {"a", "b", "c"}));
    PageScene scene("empty", withStacks(stacks));
    scene.showStacks();
    const QQuickItem *head = scene.find("PageHeader");
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->mapToScene(QPointF()).y(), 28);
    EXPECT_LT(scene.findAll("StackCard").size(), 20U);
}

TEST(StacksScreen, theKeyboardReachesEveryButton) {
    PageScene scene("empty", withStacks({stackOf("shop", {"x"})}));
    scene.showStacks();
    QStringList titles;
    for (int tabs = 0; tabs < 3; ++tabs) {
        scene.press(Qt::Key_Tab);
        ASSERT_NE(scene.view.activeFocusItem(), nullptr);
        titles.append(scene.view.activeFocusItem()->property("title").toString());
    }
    EXPECT_THAT(titles, ElementsAre(QStringLiteral("New from Folder…"), QStringLiteral("Start"),
                                    QStringLiteral("Delete")));
    scene.press(Qt::Key_Space);
    scene.press(Qt::Key_Space);
    EXPECT_THAT(scene.store->stacks(), IsEmpty());
}

} // namespace
} // namespace tarnvale
