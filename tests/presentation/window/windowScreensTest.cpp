// The main window drawn: all pages, all scenes, light and dark, wide and narrow, and what screen readers tell
// of it.

#include "presentation/window/WindowScene.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QTest>

#include <gmock/gmock.h>

#include <set>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

const std::vector<const char *> pages{"overview", "allPorts", "web",   "services", "other",
                                      "watched",  "stacks",   "sites", "activity"};

TEST(WindowScreens, everySceneIsDrawnWithoutAWarning) {
    for (const std::string &name : demoScenes())
        for (const bool isDark : {false, true}) {
            WindowScene scene(name, {}, {.isDark = isDark});
            for (const char *page : pages) {
                scene.view().navigate(QLatin1String(page));
                scene.ports().moveSelection(1);
                scene.draw();
                keepPicture(scene, name + (isDark ? "-dark-" : "-light-") + page);
                EXPECT_EQ(scene.warnings(), "") << name << " " << page;
            }
            scene.view().setQuery(QStringLiteral("nothing of the kind"));
            scene.store->setError(QStringLiteral("<b>Something</b> went wrong"));
            scene.draw();
            scene.view().togglePalette();
            scene.draw();
            scene.view().closePalette();
            scene.view().showWelcome();
            scene.pass(9s);
            scene.draw();
            EXPECT_EQ(scene.warnings(), "") << name;
        }
}

TEST(WindowScreens, closingAndOpeningAreWithoutAWarning) {
    WindowScene scene("full");
    scene.inspect(5173);
    scene.window().close();
    scene.pass(5s);
    scene.controller->show();
    scene.draw();
    EXPECT_TRUE(scene.inspector().isPresent());
    scene.window().close();
    scene.pass(31s);
    ASSERT_EQ(scene.controller->window(), nullptr);
    scene.controller->show();
    scene.draw();
    ASSERT_NE(scene.find("PortInspector"), nullptr);
    EXPECT_TRUE(scene.says(QStringLiteral("All Ports")));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowScreens, withMotionItIsDrawnAsWell) {
    WindowScene scene("full", {}, {.isDark = false, .reducesMotion = false});
    for (const char *page : pages) {
        scene.view().navigate(QLatin1String(page));
        scene.draw();
    }
    scene.inspect(5173);
    scene.inspect(8080);
    scene.store->setError(QStringLiteral("Something went wrong"));
    scene.press(Qt::Key_F9);
    EXPECT_TRUE(waitFor([&scene] {
        settle();
        return scene.find("Sidebar") == nullptr;
    }));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowScreens, theLayoutIsMirroredWhereOneReadsFromRightToLeft) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        WindowScene scene("full");
        scene.inspect(5173);
        const bool isMirrored = direction == Qt::RightToLeft;
        keepPicture(scene, isMirrored ? "right-to-left" : "left-to-right");
        const auto x = [](const QQuickItem *item) { return middleOf(*item).x(); };
        const QQuickItem *row = scene.find("WindowRowView");
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(x(scene.find("IconButton", QStringLiteral("Hide sidebar (⌃⌘S)"))) <
                      x(scene.find("SearchField")),
                  !isMirrored);
        EXPECT_EQ(x(scene.find("IconTile")) < x(scene.find("PortPill")), !isMirrored);
        EXPECT_EQ(scene.warnings(), "");
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST(WindowScreens, ofThreeHundredRowsOnlyThoseInSightAreMade) {
    WindowScene scene("many");
    scene.view().select(SidebarItem::allPorts);
    scene.draw();
    EXPECT_EQ(scene.ports().rowCount(), 300);
    EXPECT_GE(scene.findAll("WindowRowView").size(), 8u);
    EXPECT_LE(scene.findAll("WindowRowView").size(), 30u);
}

// The keyboard and screen readers.

TEST(WindowScreens, tabReachesEverythingThatTakesTheKeyboard) {
    WindowScene scene("full");
    for (const char *page : {"overview", "allPorts", "stacks", "activity"}) {
        scene.view().navigate(QLatin1String(page));
        scene.ports().moveSelection(1);
        scene.draw();
        std::set<QQuickItem *> wanted;
        for (QQuickItem *item : scene.visibleItems())
            if (item->activeFocusOnTab() && item->isEnabled())
                wanted.insert(item);
        EXPECT_GT(wanted.size(), 5u) << page;
        const std::size_t rounds = wanted.size() * 2;
        for (std::size_t tabs = 0; tabs < rounds; ++tabs) {
            QTest::keyClick(&scene.window(), Qt::Key_Tab);
            for (QQuickItem *item = focused(scene); item != nullptr; item = item->parentItem())
                wanted.erase(item); // a list's row has the keyboard for it
        }
        for (const QQuickItem *item : wanted)
            if (item->isVisible())
                ADD_FAILURE() << page << ": Tab never comes to a " << item->metaObject()->className() << " "
                              << item->property("title").toString().toStdString();
        EXPECT_EQ(scene.warnings(), "");
    }
}

TEST(WindowScreens, everythingThatTakesTheFocusHasANameAndARole) {
    QAccessible::setActive(true);
    WindowScene scene("full");
    scene.store->setError(QStringLiteral("Something went wrong"));
    for (const char *page : pages) {
        scene.view().navigate(QLatin1String(page));
        scene.ports().moveSelection(1);
        scene.draw();
        for (QQuickItem *item : scene.visibleItems()) {
            if (!item->activeFocusOnTab() || !item->isEnabled())
                continue;
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
            ASSERT_NE(face, nullptr) << item->metaObject()->className();
            EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
                << page << " " << item->metaObject()->className();
            EXPECT_NE(face->role(), QAccessible::NoRole) << face->text(QAccessible::Name).toStdString();
        }
    }
}

// Little room.

void expectApart(const std::vector<QQuickItem *> &items, const QQuickItem *within, const std::string &what) {
    const QRectF bounds = frameOf(*within);
    for (std::size_t one = 0; one < items.size(); ++one) {
        const QRectF frame = frameOf(*items[one]);
        EXPECT_TRUE(bounds.contains(frame))
            << what << ": " << items[one]->metaObject()->className() << " leaves its ground";
        for (std::size_t other = one + 1; other < items.size(); ++other)
            EXPECT_FALSE(frame.intersects(frameOf(*items[other])))
                << what << ": " << items[one]->metaObject()->className() << " overlaps "
                << items[other]->metaObject()->className();
    }
}

TEST(WindowScreens, inTheLeastWindowNothingOfTheToolbarOverlaps) {
    for (const bool hasSidebar : {true, false})
        for (const char *page : pages) {
            WindowScene scene("full");
            scene.resize(800, 560);
            if (!hasSidebar)
                scene.press(Qt::Key_F9);
            scene.view().navigate(QLatin1String(page));
            scene.draw();
            if (hasSidebar)
                keepPicture(scene, std::string("least-") + page);
            const QQuickItem *toolbar = scene.find("Toolbar");
            std::vector<QQuickItem *> parts;
            for (QQuickItem *part : toolbar->childItems())
                if (part->isVisible() && part->height() > 1)
                    parts.push_back(part);
            EXPECT_EQ(parts.size(), 4u) << "switch, title, search, buttons";
            expectApart(parts, toolbar, page);
            const QQuickItem *title = scene.find("QQuickText", scene.view().title(), "text");
            ASSERT_NE(title, nullptr);
            for (const QQuickItem *part : parts)
                EXPECT_GE(part->width(), 24) << page;
        }
}

TEST(WindowScreens, inTheLeastWindowTheListAndItsInspectorHaveRoom) {
    WindowScene scene("full");
    scene.resize(800, 560);
    scene.inspect(5173);
    keepPicture(scene, "least-inspector");
    const QQuickItem *list = scene.find("PortRowList");
    const QQuickItem *inspector = scene.find("PortInspector");
    EXPECT_GE(list->width(), 250);
    EXPECT_GE(inspector->width(), 280);
    EXPECT_FALSE(frameOf(*list).intersects(frameOf(*inspector)));
    EXPECT_EQ(frameOf(*inspector).right(), 800);
    for (QQuickItem *row : scene.findAll("WindowRowView")) {
        std::vector<QQuickItem *> parts;
        for (QQuickItem *part : scene.visibleItems())
            if (part->parentItem() == row && part->width() < row->width() && part->height() > 1)
                parts.push_back(part);
        EXPECT_GE(parts.size(), 3u) << "tile, texts, numbers";
        expectApart(parts, row, row->property("title").toString().toStdString());
    }
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowScreens, inTheLeastWindowARowUnderThePointerStillHasATitle) {
    WindowScene scene("full");
    scene.resize(800, 560);
    scene.click(sidebarRow(scene, "allPorts"));
    for (QQuickItem *row : scene.findAll("WindowRowView")) {
        if (frameOf(*row).bottom() > 550)
            continue;
        scene.hover(frameOf(*row).topLeft().toPoint() + QPoint(26, 28));
        for (const QQuickItem *part : row->childItems())
            EXPECT_GE(part->width(), 0) << row->property("title").toString().toStdString();
        const QQuickItem *actions = nullptr;
        for (const QQuickItem *each : scene.findAll("RowActions"))
            if (isWithin(each, row))
                actions = each;
        ASSERT_NE(actions, nullptr);
        EXPECT_TRUE(frameOf(*row).contains(frameOf(*actions)))
            << row->property("title").toString().toStdString();
        const QQuickItem *title = nullptr;
        for (const QQuickItem *text : scene.findAll("QQuickText"))
            if (isWithin(text, row) && text->property("text") == row->property("title"))
                title = text;
        ASSERT_NE(title, nullptr);
        EXPECT_GE(title->width(), std::min(20.0, title->implicitWidth()))
            << row->property("title").toString().toStdString();
    }
    keepPicture(scene, "least-hovered");
}

} // namespace
} // namespace tarnvale
