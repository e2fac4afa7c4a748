// The rows of the main window as their user meets them: clicked, pointed at and walked through.

#include "presentation/window/WindowScene.h"

#include <QAccessible>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

#include <set>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PortRowList, aClickSelectsARowAndGivesTheListTheKeyboard) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    EXPECT_TRUE(scene.says(QStringLiteral("No port selected")));
    const auto rows = scene.findAll("WindowRowView");
    ASSERT_EQ(rows.size(), 3u);
    scene.click(rows[1]);
    EXPECT_EQ(scene.ports().selection(), rows[1]->property("rowId").toString());
    EXPECT_EQ(scene.find("InspectorHeader")->property("facts").value<InspectorFacts>().title,
              rows[1]->property("title").toString());
    EXPECT_TRUE(rows[1]->property("hasFocus").toBool());
    EXPECT_EQ(focused(scene), rows[1]);
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.ports().selectedIndex(), 2);
    EXPECT_EQ(focused(scene), rows[2]) << "a screen reader tells it";
    EXPECT_EQ(scene.warnings(), "");
}

TEST(PortRowList, aDoubleClickOpensAWebServerAndNothingElse) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    const auto doubleClick = [&scene](const QQuickItem *row) {
        const QPoint title = frameOf(*row).topLeft().toPoint() + QPoint(70, 20);
        QTest::mouseDClick(&scene.window(), Qt::LeftButton, {}, title);
        scene.draw();
    };
    doubleClick(scene.find("WindowRowView", QStringLiteral("4201:5173"), "rowId"));
    EXPECT_THAT(scene.world.platform.desktop.opened, ElementsAre("http://localhost:5173"));
    EXPECT_EQ(scene.ports().selection(), QStringLiteral("4201:5173")) << "and it is selected";
    doubleClick(scene.find("WindowRowView", QStringLiteral("4203:5432"), "rowId"));
    EXPECT_EQ(scene.world.platform.desktop.opened.size(), 1u) << "a database isn't";
}

TEST(PortRowList, aRightClickAndTheMenuKeyOpenTheMenuOfARow) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    scene.click(scene.find("WindowRowView"), Qt::RightButton);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(openMenu()->actions().constFirst()->text(), QStringLiteral("Open in Browser"));
    EXPECT_EQ(scene.ports().selectedIndex(), 0);
    closeMenu(scene);
    scene.press(Qt::Key_Up);
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Menu);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(openMenu()->actions().constFirst()->text(),
              scene.ports().entryAt(scene.ports().selectedIndex())->isWeb ? QStringLiteral("Open in Browser")
                                                                          : QStringLiteral("Copy Address"));
    closeMenu(scene);
}

TEST(PortRowList, theActionsOfARowStandThereWhileThePointerIsOverIt) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    EXPECT_EQ(scene.find("RowActions"), nullptr);
    const QQuickItem *row = scene.find("WindowRowView", QStringLiteral("4201:5173"), "rowId");
    scene.hover(frameOf(*row).topLeft().toPoint() + QPoint(70, 20));
    ASSERT_EQ(scene.findAll("RowActions").size(), 1u);
    EXPECT_EQ(scene.ports().hovered(), QStringLiteral("4201:5173"));
    scene.click(scene.find("IconButton", QStringLiteral("Copy URL")));
    EXPECT_THAT(scene.world.platform.clipboard.texts, ElementsAre("http://localhost:5173"));
    EXPECT_NE(scene.find("IconButton", QStringLiteral("Copied")), nullptr);
    scene.click(scene.find("IconButton", QStringLiteral("Kill process")));
    EXPECT_THAT(scene.world.platform.processes.sent, IsEmpty());
    scene.click(scene.find("ArmedButton", QStringLiteral("Kill")));
    scene.pass(1s);
    scene.draw();
    EXPECT_EQ(scene.world.platform.processes.sent.size(), 1u);
    EXPECT_EQ(scene.findAll("WindowRowView").size(), 2u);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(PortRowList, theSelectedRowIsBroughtIntoSight) {
    WindowScene scene("many");
    scene.click(sidebarRow(scene, "allPorts"));
    scene.click(scene.find("WindowRowView"));
    const auto isInSight = [&scene] {
        scene.draw();
        const QQuickItem *list = scene.find("PortRowList");
        for (const QQuickItem *row : scene.findAll("WindowRowView"))
            if (row->property("isSelected").toBool()) {
                const QRectF place = row->mapRectToItem(list, QRectF(0, 0, row->width(), row->height()));
                return place.top() >= 36 && place.bottom() <= list->height();
            }
        return false;
    };
    for (int times = 0; times < 40; ++times)
        QTest::keyClick(&scene.window(), Qt::Key_Down);
    EXPECT_TRUE(waitFor(isInSight));
    for (int times = 0; times < 40; ++times)
        QTest::keyClick(&scene.window(), Qt::Key_Up);
    EXPECT_TRUE(waitFor(isInSight)) << "and not behind the head of its section";
}

TEST(PortRowList, sectionsHaveTheirTitleAndCount) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    std::set<QString> names;
    for (QQuickItem *head : scene.findAll("PortSectionHeader"))
        names.insert(nameOf(head));
    EXPECT_THAT(names, ElementsAre(QStringLiteral("Databases & Services, 1"), QStringLiteral("Web, 2")));
    EXPECT_THAT(scene.ports().sectionSymbols(),
                ElementsAre(QStringLiteral("globe"), QStringLiteral("cylinder")));
    const QQuickItem *head = scene.find("PortSectionHeader", QStringLiteral("Web"), "section");
    const QQuickItem *symbol = scene.find("Symbol", QStringLiteral("globe"), "name");
    for (const QQuickItem *each : scene.findAll("Symbol"))
        if (isWithin(each, head))
            symbol = each;
    EXPECT_TRUE(isWithin(symbol, head));
    EXPECT_EQ(symbol->property("name").toString(), QStringLiteral("globe"));
}

TEST(PortRowList, aThumbnailStandsInTheRowOfAWebServerWhenPreviewsAreOn) {
    QAccessible::setActive(true);
    for (const bool isEnabled : {true, false}) {
        WindowScene scene("few", [isEnabled](DemoWorld &world) {
            world.platform.settings.values["showWebPreviews"] = isEnabled;
        });
        scene.click(sidebarRow(scene, "allPorts"));
        scene.resize(1400, 800);
        scene.pass(5s);
        scene.draw();
        QQuickItem *row = scene.find("WindowRowView", QStringLiteral("4201:5173"), "rowId");
        QQuickItem *picture = nullptr;
        for (QQuickItem *item : scene.findAll("WebPreviewImage"))
            if (isWithin(item, row))
                picture = item;
        ASSERT_EQ(picture != nullptr, isEnabled);
        if (picture != nullptr) {
            EXPECT_EQ(nameOf(picture), QStringLiteral("Preview of localhost:5173"));
        }
        EXPECT_EQ(scene.warnings(), "");
    }
}

} // namespace
} // namespace tarnvale
