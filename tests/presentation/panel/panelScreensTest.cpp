// The panel as its user meets it: drawn, clicked, typed at and read aloud.

#include "presentation/panel/PanelScene.h"

#include "presentation/design/HoverTip.h"
#include "presentation/design/ToolTips.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Goes through the states that change what is drawn.
void showEverything(PanelScene &scene) {
    PortListController &list = scene.menuBar->list();
    list.setShowRecent(true);
    list.setShowAllRecent(true);
    list.moveSelection(1);
    list.stopInTwoSteps(list.selection());
    list.stopVisibleInTwoSteps();
    list.copyAddress(list.selection());
    scene.store->setError(QStringLiteral("<b>Something</b> went wrong"));
    scene.draw();
    list.setQuery(QStringLiteral("80"));
    scene.draw();
    list.setQuery(QStringLiteral("nothing of the kind"));
    scene.draw();
    list.setQuery({});
    list.showSystemProcesses();
    scene.pass(5s);
    scene.draw();
}

TEST(PanelScreens, everySceneIsDrawnWithoutAWarning) {
    for (const std::string &name : demoScenes())
        for (const bool isDark : {false, true}) {
            PanelScene scene(name, isDark);
            scene.open();
            EXPECT_EQ(scene.warnings(), "") << name;
            showEverything(scene);
            EXPECT_EQ(scene.warnings(), "") << name;
            scene.menuBar->close();
            scene.pass(1s);
            scene.open();
            EXPECT_EQ(scene.warnings(), "") << name;
        }
}

TEST(PanelScreens, everythingThatTakesTheFocusHasANameAndARole) {
    QAccessible::setActive(true);
    PanelScene scene("full");
    scene.open();
    scene.menuBar->list().setShowRecent(true);
    scene.menuBar->list().moveSelection(1);
    scene.store->setError(QStringLiteral("Something went wrong"));
    scene.draw();
    int focusable = 0;
    for (QQuickItem *item : scene.visibleItems()) {
        if (!item->activeFocusOnTab() || !item->isEnabled())
            continue;
        ++focusable;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
        ASSERT_NE(face, nullptr) << item->metaObject()->className();
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << item->metaObject()->className();
        EXPECT_NE(face->role(), QAccessible::NoRole) << face->text(QAccessible::Name).toStdString();
    }
    EXPECT_GT(focusable, 15);
}

TEST(PanelScreens, rowsAreReadAloud) {
    QAccessible::setActive(true);
    PanelScene scene("few");
    scene.open();
    const auto rows = scene.findAll("PortRowView");
    ASSERT_EQ(rows.size(), 3u);
    for (QQuickItem *row : rows) {
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(row);
        EXPECT_EQ(face->role(), QAccessible::ListItem);
        EXPECT_THAT(face->text(QAccessible::Name).toStdString(), testing::HasSubstr("port "));
    }
}

TEST(PanelScreens, theLayoutIsMirroredWhereOneReadsFromRightToLeft) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        PanelScene scene("full");
        scene.open();
        showEverything(scene);
        const bool isMirrored = direction == Qt::RightToLeft;
        const auto isLeft = [](const QQuickItem *one, const QQuickItem *other) {
            return middleOf(*one).x() < middleOf(*other).x();
        };
        const QQuickItem *row = scene.find("PortRowView");
        ASSERT_NE(row, nullptr);
        const QQuickItem *tile = scene.find("IconTile");
        EXPECT_EQ(isLeft(tile, scene.find("PortPill")), !isMirrored);
        EXPECT_EQ(isLeft(scene.find("IconButton", QStringLiteral("Settings")), scene.find("HotKeyChip")),
                  !isMirrored);
        EXPECT_EQ(isLeft(scene.find("Chip"), scene.findAll("Chip").back()), !isMirrored);
        EXPECT_EQ(scene.warnings(), "");
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST(PanelScreens, theHighlightLiesOnTheChosenChipInBothDirections) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        PanelScene scene("full");
        scene.open();
        const QQuickItem *chip = scene.find("Chip", QStringLiteral("Services"));
        ASSERT_NE(chip, nullptr);
        scene.click(chip);
        EXPECT_EQ(scene.menuBar->list().filter(), static_cast<int>(PortFilter::services));
        const QQuickItem *highlight = scene.find("ChipRow")->childItems().constFirst();
        EXPECT_NEAR(middleOf(*highlight).x(), middleOf(*chip).x(), 1);
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST(PanelScreens, ofThreeHundredRowsOnlyThoseInSightAreMade) {
    PanelScene scene("many");
    scene.open();
    EXPECT_EQ(scene.menuBar->list().rowCount(), 300);
    const std::size_t made = scene.findAll("PortRowView").size();
    EXPECT_GE(made, 8u);
    EXPECT_LE(made, 20u);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(PanelScreens, theListIsNoTallerThanItsRowsAndItsCap) {
    PanelScene few("few");
    few.open();
    EXPECT_EQ(few.find("PortRows")->height(), 50 * 3 + 28 * 2 + 6);
    PanelScene many("many");
    many.open();
    EXPECT_EQ(many.find("PortRows")->height(), 440);
}

TEST(PanelScreens, anEmptyMachineSaysSo) {
    PanelScene scene("empty");
    scene.open();
    EXPECT_EQ(scene.find("ChipRow"), nullptr) << "one chip alone is none";
    const QQuickItem *state = scene.find("EmptyState");
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->property("title").toString(), QStringLiteral("No dev servers running"));
    scene.menuBar->list().setQuery(QStringLiteral("shop"));
    EXPECT_EQ(state->property("title").toString(), QStringLiteral("No ports match “shop”"));
    scene.menuBar->list().setQuery({});
    scene.draw();
    const QQuickItem *link = scene.find("LinkButton", QStringLiteral("Show system processes"));
    ASSERT_NE(link, nullptr);
    scene.click(link);
    EXPECT_TRUE(scene.store->showAll());
    EXPECT_EQ(state->property("title").toString(), QStringLiteral("Nothing is listening"));
    EXPECT_EQ(scene.find("LinkButton", QStringLiteral("Show system processes")), nullptr);
}

TEST(PanelScreens, twoClicksOnStopEndTheServer) {
    PanelScene scene("few");
    scene.open();
    const QQuickItem *row = scene.find("PortRowView");
    ASSERT_NE(row, nullptr);
    scene.hover(middleOf(*row));
    EXPECT_NE(scene.menuBar->list().hovered(), QString());
    const QQuickItem *stop = scene.find("IconButton", QStringLiteral("Kill process"));
    ASSERT_NE(stop, nullptr);
    scene.click(stop);
    EXPECT_TRUE(scene.world.platform.processes.sent.empty());
    const QQuickItem *confirm = scene.find("ArmedButton", QStringLiteral("Kill"));
    ASSERT_NE(confirm, nullptr);
    EXPECT_EQ(middleOf(*stop).y(), middleOf(*confirm).y());
    scene.click(confirm);
    scene.pass(1s);
    scene.draw();
    ASSERT_EQ(scene.world.platform.processes.sent.size(), 1u);
    EXPECT_EQ(scene.findAll("PortRowView").size(), 2u);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(PanelScreens, theKeyboardAloneFindsAndStopsAServer) {
    PanelScene scene("few");
    scene.open();
    QQuickWindow &window = scene.menuBar->panel();
    PortListController &list = scene.menuBar->list();
    QTest::keyClick(&window, Qt::Key_K);
    EXPECT_EQ(list.query(), QStringLiteral("k")) << "typed: nothing is selected";
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(list.query(), QString());
    EXPECT_TRUE(scene.menuBar->isOpen());
    QTest::keyClick(&window, Qt::Key_Down);
    EXPECT_EQ(list.selectedIndex(), 0);
    QTest::keyClick(&window, Qt::Key_K);
    EXPECT_EQ(list.armedKill(), list.selection());
    EXPECT_EQ(list.query(), QString());
    QTest::keyClick(&window, Qt::Key_K);
    scene.pass(1s);
    EXPECT_EQ(scene.world.platform.processes.sent.size(), 1u);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(scene.menuBar->isOpen());
}

TEST(PanelScreens, theSelectedRowIsBroughtIntoSight) {
    PanelScene scene("many");
    scene.open();
    for (int times = 0; times < 40; ++times)
        QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Down);
    const auto isInSight = [&scene] {
        scene.draw();
        const QQuickItem *rows = scene.find("PortRows");
        for (const QQuickItem *row : scene.findAll("PortRowView"))
            if (row->property("isSelected").toBool()) {
                const QRectF place = row->mapRectToItem(rows, QRectF(0, 0, row->width(), row->height()));
                return place.top() >= 28 && place.bottom() <= rows->height();
            }
        return false;
    };
    EXPECT_TRUE(waitFor(isInSight));
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Down);
    for (int times = 0; times < 39; ++times)
        QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Up);
    EXPECT_TRUE(waitFor(isInSight)) << "and not behind the head of its section";
}

TEST(PanelScreens, aRightClickAndTheMenuKeyOpenTheMenuOfARow) {
    PanelScene scene("few");
    scene.open();
    const auto menu = [] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); };
    scene.click(scene.find("PortRowView"), Qt::RightButton);
    ASSERT_NE(menu(), nullptr);
    EXPECT_EQ(menu()->actions().constFirst()->text(), QStringLiteral("Open in Browser"));
    menu()->close();
    settle();
    ASSERT_TRUE(scene.menuBar->isOpen());
    scene.menuBar->panel().requestActivate(); // in memory a menu takes the keyboard with it
    settle();
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Up);
    EXPECT_EQ(scene.menuBar->list().selectedIndex(), 2);
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Menu);
    scene.pass(100ms);
    ASSERT_NE(menu(), nullptr);
    EXPECT_EQ(menu()->actions().constFirst()->text(), QStringLiteral("Copy Address"));
    menu()->close();
    settle();
}

TEST(PanelScreens, theGearOpensTheMenuOfSettings) {
    PanelScene scene("few");
    scene.open();
    scene.click(scene.find("IconButton", QStringLiteral("Settings")));
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    menu->actions().constLast()->trigger();
    menu->close();
    settle();
    EXPECT_EQ(scene.quits, 1);
}

TEST(PanelScreens, theWindowsButtonOpensTheWindow) {
    PanelScene scene("few");
    scene.open();
    scene.click(scene.find("IconButton", QStringLiteral("Open Tarnvale Window")));
    EXPECT_EQ(scene.windows, 1);
}

TEST(PanelScreens, recentActivityUnfoldsAndFolds) {
    PanelScene scene("full");
    scene.open();
    scene.click(scene.find("Pressable", QStringLiteral("Recent")));
    EXPECT_TRUE(scene.menuBar->list().showRecent());
    const QQuickItem *more = scene.find("LinkButton", QStringLiteral("Show all (12)"));
    ASSERT_NE(more, nullptr);
    EXPECT_NE(scene.find("LinkButton", QStringLiteral("Clear")), nullptr);
    scene.click(more);
    EXPECT_EQ(scene.menuBar->list().shownEvents(), 12);
    EXPECT_NE(scene.find("LinkButton", QStringLiteral("Show less")), nullptr);
}

TEST(PanelScreens, sixEventsHaveNoLinkToMore) {
    PanelScene scene("few");
    scene.open();
    scene.menuBar->list().setShowRecent(true);
    scene.draw();
    ASSERT_LE(scene.menuBar->list().eventCount(), 6);
    for (const QQuickItem *link : scene.findAll("LinkButton"))
        EXPECT_FALSE(link->property("title").toString().startsWith(QStringLiteral("Show all")));
}

TEST(PanelScreens, theBannerIsDismissed) {
    PanelScene scene("few");
    scene.open();
    EXPECT_EQ(scene.find("Banner"), nullptr);
    scene.store->setError(QStringLiteral("Something went wrong"));
    scene.draw();
    ASSERT_NE(scene.find("Banner"), nullptr);
    scene.click(scene.find("IconButton", QStringLiteral("Dismiss")));
    EXPECT_EQ(scene.store->error(), std::nullopt);
    EXPECT_EQ(scene.find("Banner"), nullptr);
}

TEST(PanelScreens, aToolTipIsShortHoweverLongTheCommandLine) {
    PanelScene scene("long");
    scene.open();
    const QQuickItem *tile = scene.find("IconTile");
    ASSERT_NE(tile, nullptr);
    const QPoint text = middleOf(*tile) + QPoint(static_cast<int>(tile->width()), 0);
    scene.hover(text);
    ASSERT_TRUE(waitFor([] { return !ToolTips::instance().shownText().isEmpty(); }));
    EXPECT_LE(ToolTips::instance().shownText().size(), 2000);
    for (const HoverTip *tip : scene.menuBar->panel().contentItem()->findChildren<HoverTip *>())
        EXPECT_LE(tip->text().size(), 10'000);
    scene.menuBar->close();
}

} // namespace
} // namespace tarnvale
