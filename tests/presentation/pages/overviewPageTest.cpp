// The overview as its user meets it: drawn, clicked and walked through with the keyboard.

#include "presentation/pages/PageScene.h"

#include <QAccessible>
#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;

std::vector<QString> titlesOf(const std::vector<QQuickItem *> &items) {
    std::vector<QString> titles;
    for (const QQuickItem *item : items)
        titles.push_back(item->property("title").toString());
    return titles;
}

TEST(OverviewScreen, withNothingThereIsAQuietBlockAndNoOther) {
    PageScene scene("empty");
    scene.showOverview();
    EXPECT_THAT(scene.texts(), IsSupersetOf({QStringLiteral("Nothing is listening right now."),
                                             QStringLiteral("All quiet")}));
    std::vector<int> values;
    for (const QQuickItem *card : scene.findAll("StatCard"))
        values.push_back(card->property("value").toInt());
    EXPECT_THAT(values, ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(scene.findAll("BlockHeader"), IsEmpty());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(OverviewScreen, theCountersSayWhatTheyCount) {
    PageScene scene("few");
    scene.showOverview();
    EXPECT_THAT(titlesOf(scene.findAll("StatCard")),
                ElementsAre("Listening", "Web servers", "Databases & services", "Exposed to network"));
    EXPECT_THAT(scene.texts(),
                IsSupersetOf({QStringLiteral("1 responding"), QStringLiteral("Reachable from your LAN"),
                              QStringLiteral("3 servers are listening on this Mac.")}));
    EXPECT_EQ(scene.find("StatCard", QStringLiteral("Listening"))->property("value").toInt(), 3);
}

TEST(OverviewScreen, eachBlockLeadsToItsPage) {
    PageScene scene("full");
    scene.resize(1000, 1400);
    scene.showOverview();
    for (const char *title : {"Listening", "Web servers", "Databases & services", "Exposed to network"})
        scene.click(scene.find("StatCard", QLatin1String(title)));
    for (const char *title : {"See all", "View all", "Manage"})
        scene.click(scene.find("LinkButton", QLatin1String(title)));
    EXPECT_THAT(scene.pages, ElementsAre(SidebarItem::allPorts, SidebarItem::web, SidebarItem::services,
                                         SidebarItem::allPorts, SidebarItem::allPorts, SidebarItem::activity,
                                         SidebarItem::stacks));
}

TEST(OverviewScreen, aClickOnACardOpensItsPort) {
    PageScene scene("few");
    scene.showOverview();
    scene.click(scene.find("RunningCard", QStringLiteral("postgresql")));
    ASSERT_THAT(scene.selected, SizeIs(1));
    EXPECT_THAT(scene.selected.front(), testing::EndsWith(":5432"));
}

TEST(OverviewScreen, onlyAWebCardHasAButtonForTheBrowser) {
    PageScene scene("few");
    scene.showOverview();
    const auto buttons = scene.findAll("IconButton");
    ASSERT_THAT(buttons, SizeIs(2)); // shop and billing; not the database
    scene.click(buttons.front());
    EXPECT_THAT(scene.world.platform.desktop.opened, ElementsAre("http://localhost:5173"));
    EXPECT_THAT(scene.selected, IsEmpty());
}

TEST(OverviewScreen, aRightClickAsksForTheMenuAtThePointer) {
    PageScene scene("few");
    scene.showOverview();
    std::vector<QPointF> places;
    QObject::connect(scene.overview.get(), &PortRowsController::menuReady, scene.overview.get(),
                     [&](const QPointF &place, const auto &) { places.push_back(place); });
    const QQuickItem *card = scene.find("RunningCard");
    scene.click(card, Qt::RightButton);
    ASSERT_THAT(places, SizeIs(1));
    EXPECT_EQ(places.front().toPoint(), scene.view.mapToGlobal(middleOf(*card)));
    EXPECT_THAT(scene.selected, IsEmpty());
}

TEST(OverviewScreen, stacksStandWithTheirButtons) {
    PageScene scene("full");
    scene.resize(1000, 1400);
    scene.showOverview();
    scene.click(scene.find("IconButton", QStringLiteral("Start docs")));
    EXPECT_THAT(scene.world.platform.launcher.commands(), ElementsAre("python3 -m http.server 8000"));
}

TEST(OverviewScreen, theKeyboardWalksTheCards) {
    PageScene scene("full");
    scene.showOverview();
    const QQuickItem *grid = scene.find("CardGrid");
    ASSERT_NE(grid, nullptr);
    const int columns = grid->property("columns").toInt();
    ASSERT_EQ(columns, 3);
    for (int tabs = 0; tabs < 6; ++tabs) // the counters, "See all", the first card
        scene.press(Qt::Key_Tab);
    EXPECT_EQ(scene.view.activeFocusItem()->property("title").toString(), QStringLiteral("landing"));
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Down);
    EXPECT_EQ(grid->property("current").toInt(), 4);
    scene.press(Qt::Key_Left);
    scene.press(Qt::Key_Up);
    scene.press(Qt::Key_Up);
    scene.press(Qt::Key_Left);
    EXPECT_EQ(grid->property("current").toInt(), 0);
    scene.press(Qt::Key_Return);
    EXPECT_THAT(scene.selected, SizeIs(1));
    int menus = 0;
    QObject::connect(scene.overview.get(), &PortRowsController::menuReady, scene.overview.get(),
                     [&] { ++menus; });
    scene.press(Qt::Key_Menu);
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(menus, 2);
    scene.press(Qt::Key_F10);
    EXPECT_EQ(menus, 2);
}

TEST(OverviewScreen, theKeyboardScrollsToTheCardItReaches) {
    PageScene scene("many");
    scene.showOverview();
    const QQuickItem *grid = scene.find("CardGrid");
    for (int tabs = 0; tabs < 6; ++tabs)
        scene.press(Qt::Key_Tab);
    for (int steps = 0; steps < 40; ++steps)
        scene.press(Qt::Key_Down);
    EXPECT_EQ(grid->property("current").toInt(), 120);
    const QQuickItem *card = scene.view.activeFocusItem();
    ASSERT_NE(card, nullptr);
    const QRectF seen = frameOf(*card);
    EXPECT_GE(seen.top(), 0);
    EXPECT_LE(seen.bottom(), scene.view.height());
}

TEST(OverviewScreen, onlyCardsInSightAreMade) {
    PageScene scene("many");
    scene.showOverview();
    EXPECT_EQ(scene.overview->rowCount(), 300);
    EXPECT_LT(scene.findAll("RunningCard").size(), 40U);
    scene.view.rootObject()->setProperty("contentY", 5000);
    scene.draw();
    EXPECT_THAT(scene.findAll("RunningCard"), Not(IsEmpty()));
    EXPECT_LT(scene.findAll("RunningCard").size(), 40U);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(OverviewScreen, aScanKeepsThePlaceAndTheFocus) {
    PageScene scene("full");
    scene.showOverview();
    for (int tabs = 0; tabs < 6; ++tabs)
        scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Right);
    const QQuickItem *before = scene.view.activeFocusItem();
    const QString title = before->property("title").toString();
    scene.view.rootObject()->setProperty("contentY", 60);
    scene.world.platform.machine.add(
        {.pid = 9000, .path = "/usr/bin/node", .args = "node x", .cwd = "/home/me/x"});
    scene.world.platform.machine.listen(9000, 2999);
    scene.scan();
    scene.draw();
    EXPECT_EQ(scene.view.activeFocusItem(), before);
    EXPECT_EQ(before->property("title").toString(), title);
    EXPECT_EQ(scene.view.rootObject()->property("contentY").toReal(), 60);
}

TEST(OverviewScreen, everythingThatTakesTheFocusHasANameAndARole) {
    QAccessible::setActive(true);
    PageScene scene("full");
    scene.resize(1000, 1400);
    scene.showOverview();
    int stops = 0;
    for (QQuickItem *item : scene.visibleItems()) {
        if (!item->activeFocusOnTab())
            continue;
        ++stops;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
        ASSERT_NE(face, nullptr);
        EXPECT_NE(face->role(), QAccessible::NoRole);
        EXPECT_NE(face->text(QAccessible::Name), QString()) << item->metaObject()->className();
    }
    EXPECT_GT(stops, 8);
}

TEST(OverviewScreen, cardsOfManyPortsShowTheFirst) {
    PageScene scene("full");
    scene.showOverview();
    EXPECT_THAT(scene.texts(), Contains(QStringLiteral(":5173")));
}

} // namespace
} // namespace tarnvale
