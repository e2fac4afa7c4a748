// How its user gets about in the main window: sidebar, toolbar, search and keys.

#include "presentation/window/WindowScene.h"

#include <QAccessible>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const std::vector<const char *> pages{"overview", "allPorts", "web",   "services", "other",
                                      "watched",  "stacks",   "sites", "activity"};

/// A user's folder of local sites, with one in it.
void addSite(DemoWorld &) {
    const std::filesystem::path home = qEnvironmentVariable("HOME").toStdString();
    std::filesystem::create_directories(home / "sites/shop");
    std::filesystem::create_directories(home / ".config/valet");
    std::ofstream(home / ".config/valet/config.json")
        << R"({"tld":"test","paths":[")" << (home / "sites").string() << R"("]})";
}

// The sidebar.

TEST(WindowNavigation, everyPageIsReachedByAClick) {
    WindowScene scene("full");
    for (const char *page : pages) {
        if (QLatin1String(page) == QLatin1String("sites"))
            continue; // there are none
        scene.click(sidebarRow(scene, page));
        EXPECT_EQ(scene.view().selection(), QLatin1String(page));
        EXPECT_TRUE(sidebarRow(scene, page)->property("isCurrent").toBool());
        EXPECT_TRUE(scene.says(scene.view().title()));
        EXPECT_EQ(scene.window().title(), scene.view().title());
    }
    EXPECT_EQ(sidebarRow(scene, "sites"), nullptr);
    EXPECT_EQ(scene.warnings(), "");
}

/// The holders of the pages, whether they can be seen or not.
std::vector<QQuickItem *> pageHolders(const QQuickItem *item) {
    std::vector<QQuickItem *> found;
    for (QQuickItem *child : item->childItems()) {
        if (child->property("isWanted").isValid())
            found.push_back(child);
        std::ranges::copy(pageHolders(child), std::back_inserter(found));
    }
    return found;
}

TEST(WindowNavigation, everyPageIsMadeBeforeItIsAskedFor) {
    WindowScene scene("full");
    const auto holders = pageHolders(scene.window().contentItem());
    ASSERT_EQ(holders.size(), 5u);
    const auto isMade = [](const QQuickItem *holder) { return holder->property("isMade").toBool(); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::all_of(holders, isMade); }));
    EXPECT_EQ(std::ranges::count_if(holders, &QQuickItem::isVisible), 1);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, aPageThatWasMadeBeforeTakesTheKeysOfTheSearch) {
    WindowScene scene("full");
    const auto holders = pageHolders(scene.window().contentItem());
    const auto isMade = [](const QQuickItem *holder) { return holder->property("isMade").toBool(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::ranges::all_of(holders, isMade); }));
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.type(QStringLiteral("shop"));
    scene.press(Qt::Key_Down);
    EXPECT_TRUE(isWithin(focused(scene), scene.find("PortRowList")));
    EXPECT_EQ(scene.ports().selectedIndex(), 0);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, fromTheSearchTheFirstFindIsSelectedUnlessAnotherIs) {
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return}) {
        WindowScene scene("full");
        scene.press(Qt::Key_F, Qt::ControlModifier);
        scene.type(QStringLiteral("la"));
        scene.press(key);
        EXPECT_EQ(scene.ports().selectedIndex(), 0);
        scene.press(Qt::Key_Down);
        EXPECT_EQ(scene.ports().selectedIndex(), 1);
        scene.press(Qt::Key_F, Qt::ControlModifier);
        scene.press(key);
        EXPECT_EQ(scene.ports().selectedIndex(), 1) << "it stays";
        EXPECT_TRUE(isWithin(focused(scene), scene.find("PortRowList")));
        scene.press(Qt::Key_F, Qt::ControlModifier);
        scene.type(QStringLiteral("nothing like it"));
        scene.press(key);
        EXPECT_EQ(scene.ports().selectedIndex(), -1);
        EXPECT_EQ(scene.warnings(), "");
    }
}

TEST(WindowNavigation, aPageThatIsAskedForComesAtOnce) {
    WindowScene scene("full");
    scene.view().select(SidebarItem::activity);
    const auto holders = pageHolders(scene.window().contentItem());
    const auto shown = std::ranges::find_if(holders, &QQuickItem::isVisible);
    ASSERT_NE(shown, holders.end());
    EXPECT_TRUE((*shown)->property("isMade").toBool());
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, everyPageIsReachedByTheArrows) {
    WindowScene scene("full");
    const QQuickItem *sidebar = scene.find("Sidebar");
    for (int tabs = 0; tabs < 60 && !isWithin(focused(scene), scene.find("SidebarRowView")); ++tabs)
        scene.press(Qt::Key_Tab);
    ASSERT_TRUE(isWithin(focused(scene), sidebar)) << "Tab leads there";
    std::vector<std::string> seen{scene.view().selection().toStdString()};
    for (int steps = 0; steps < 7; ++steps) {
        scene.press(Qt::Key_Down);
        seen.push_back(scene.view().selection().toStdString());
        EXPECT_EQ(focused(scene), sidebarRow(scene, seen.back().c_str())) << "a screen reader tells it";
    }
    EXPECT_THAT(seen, ElementsAre("overview", "allPorts", "web", "services", "other", "watched", "stacks",
                                  "activity"));
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.view().page(), SidebarItem::activity) << "held at the end";
    EXPECT_TRUE(isWithin(focused(scene), sidebar)) << "the page that comes takes no keyboard";
    for (int steps = 0; steps < 8; ++steps)
        scene.press(Qt::Key_Up);
    EXPECT_EQ(scene.view().page(), SidebarItem::overview);
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, theArrowsGoOnFromAPageWhoseRowIsGone) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "services"));
    scene.world.platform.machine.end(4203);
    scene.scan();
    scene.draw();
    ASSERT_EQ(scene.view().page(), SidebarItem::services);
    ASSERT_EQ(sidebarRow(scene, "services"), nullptr);
    EXPECT_TRUE(scene.says(QStringLiteral("No dev servers running")));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, countsStandBesideTheirRowsButForNone) {
    WindowScene scene("few");
    const auto badge = [&scene](const char *key) {
        return sidebarRow(scene, key)->property("count").toInt();
    };
    EXPECT_EQ(badge("overview"), 0);
    EXPECT_EQ(badge("allPorts"), 3);
    EXPECT_EQ(badge("web"), 2);
    EXPECT_EQ(badge("services"), 1);
    EXPECT_EQ(badge("watched"), 0);
    QStringList words;
    for (const QQuickItem *item : scene.findAll("QQuickText"))
        if (isWithin(item, sidebarRow(scene, "watched")) && !item->property("text").toString().isEmpty())
            words.append(item->property("text").toString());
    EXPECT_EQ(words, QStringList{QStringLiteral("Watched")}) << "a count of 0 shows no badge";
    EXPECT_EQ(nameOf(sidebarRow(scene, "web")), QStringLiteral("Web, 2"));
}

TEST(WindowNavigation, theFootSaysThatItIsLiveAndLeadsToTheSettings) {
    WindowScene scene("few");
    for (const char *text : {"Live", "Scanning every 2s", "Menu bar"})
        EXPECT_TRUE(scene.says(QLatin1String(text))) << text;
    EXPECT_NE(scene.find("Keycaps"), nullptr);
    EXPECT_NE(scene.find("PulsingDot"), nullptr);
    scene.click(scene.find("IconButton", QStringLiteral("Settings (⌘,)")));
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_THAT(scene.done, ElementsAre("settings", "settings"));
}

TEST(WindowNavigation, f9HidesAndShowsTheSidebarAtOnceWithoutMotion) {
    WindowScene scene("few");
    const QQuickItem *sidebar = scene.find("Sidebar");
    const QQuickItem *toolbar = scene.find("Toolbar");
    ASSERT_NE(sidebar, nullptr);
    const double width = sidebar->width();
    EXPECT_EQ(frameOf(*toolbar).left(), width);
    QTest::keyClick(&scene.window(), Qt::Key_F9);
    EXPECT_EQ(sidebar->x(), -width);
    EXPECT_FALSE(sidebar->isVisible());
    scene.draw();
    EXPECT_EQ(frameOf(*toolbar).left(), 0);
    EXPECT_EQ(toolbar->width(), scene.window().width());
    scene.click(scene.find("IconButton", QStringLiteral("Show sidebar (⌃⌘S)")));
    EXPECT_TRUE(sidebar->isVisible());
    EXPECT_EQ(sidebar->x(), 0);
}

TEST(WindowNavigation, localSitesHaveTheirRowAndPage) {
    WindowScene scene("few", addSite);
    ASSERT_NE(sidebarRow(scene, "sites"), nullptr);
    EXPECT_EQ(sidebarRow(scene, "sites")->property("count").toInt(), 1);
    scene.click(sidebarRow(scene, "sites"));
    EXPECT_TRUE(scene.says(QStringLiteral("shop.test")));
    EXPECT_EQ(scene.warnings(), "");
}

// The toolbar.

TEST(WindowNavigation, theButtonsOfTheToolbarHaveNames) {
    QAccessible::setActive(true);
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    const QQuickItem *toolbar = scene.find("Toolbar");
    std::vector<std::string> names;
    for (QQuickItem *button : scene.findAll("IconButton"))
        if (isWithin(button, toolbar))
            names.push_back(nameOf(button).toStdString());
    EXPECT_THAT(names, ElementsAre("Hide sidebar (⌃⌘S)", "Hide inspector", "Refresh now (⌘R)", "More"));
    EXPECT_EQ(nameOf(searchInput(scene)), QStringLiteral("Search ports, projects, containers"));
    scene.click(sidebarRow(scene, "overview"));
    EXPECT_EQ(scene.find("IconButton", QStringLiteral("Hide inspector")), nullptr);
}

TEST(WindowNavigation, theInspectorsButtonHidesAndShowsIt) {
    WindowScene scene("few");
    scene.inspect(5173);
    ASSERT_NE(scene.find("PortInspector"), nullptr);
    const double narrow = scene.find("PortRowList")->width();
    scene.click(scene.find("IconButton", QStringLiteral("Hide inspector")));
    EXPECT_EQ(scene.find("PortInspector"), nullptr);
    EXPECT_GT(scene.find("PortRowList")->width(), narrow);
    scene.click(scene.find("IconButton", QStringLiteral("Show inspector")));
    EXPECT_NE(scene.find("PortInspector"), nullptr);
}

TEST(WindowNavigation, typingOnTheOverviewLeadsToAllPorts) {
    WindowScene scene("few");
    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focused(scene), searchInput(scene));
    scene.type(QStringLiteral("s"));
    EXPECT_EQ(scene.view().page(), SidebarItem::allPorts);
    EXPECT_EQ(focused(scene), searchInput(scene)) << "one types on";
    scene.type(QStringLiteral("hop"));
    EXPECT_EQ(scene.view().query(), QStringLiteral("shop"));
    EXPECT_EQ(scene.findAll("WindowRowView").size(), 1u);
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(scene.view().query(), QString());
    EXPECT_EQ(searchInput(scene)->property("text").toString(), QString());
    EXPECT_EQ(scene.view().page(), SidebarItem::allPorts) << "clearing doesn't go back";
    scene.press(Qt::Key_Escape);
    EXPECT_NE(focused(scene), searchInput(scene));
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowNavigation, typingOnThePageOfASectionStaysThere) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "web"));
    scene.press(Qt::Key_Slash);
    ASSERT_EQ(focused(scene), searchInput(scene));
    scene.type(QStringLiteral("zzz/"));
    EXPECT_EQ(scene.view().query(), QStringLiteral("zzz/"));
    EXPECT_EQ(scene.view().page(), SidebarItem::web);
    EXPECT_TRUE(scene.says(QStringLiteral("No ports match “zzz/”")));
    scene.click(scene.find("IconButton", QStringLiteral("Clear search")));
    EXPECT_EQ(scene.view().query(), QString());
    EXPECT_EQ(scene.view().page(), SidebarItem::web);
}

TEST(WindowNavigation, theSearchFieldShowsTheSearchThatIsKept) {
    WindowScene scene("few");
    scene.view().setQuery(QStringLiteral("shop"));
    scene.draw();
    EXPECT_EQ(searchInput(scene)->property("text").toString(), QStringLiteral("shop"));
    scene.window().close();
    scene.pass(31s);
    scene.controller->show();
    scene.draw();
    EXPECT_EQ(searchInput(scene)->property("text").toString(), QStringLiteral("shop"));
}

TEST(WindowNavigation, refreshingIsAskedForByButtonAndKeys) {
    WindowScene scene("few");
    const auto scans = [&scene] {
        return std::ranges::count(scene.world.platform.machine.questions(), "listeningSockets");
    };
    const auto expectOne = [&](const std::function<void()> &ask, const char *by) {
        const auto before = scans();
        ask();
        EXPECT_TRUE(scene.view().isRefreshing()) << by;
        EXPECT_EQ(scans(), before + 1) << by;
        scene.pass(500ms);
        EXPECT_FALSE(scene.view().isRefreshing()) << by;
    };
    expectOne([&] { scene.click(scene.find("IconButton", QStringLiteral("Refresh now (⌘R)"))); },
              "the button");
    expectOne(
        [&] {
            scene.press(Qt::Key_R, Qt::ControlModifier);
            scene.press(Qt::Key_R, Qt::ControlModifier);
        },
        "Ctrl+R, twice");
    expectOne([&] { scene.press(Qt::Key_F5); }, "F5");
}

TEST(WindowNavigation, theSymbolTurnsWhileItRefreshesUnlessMotionIsUnwanted) {
    for (const bool reducesMotion : {false, true}) {
        WindowScene scene("few", {}, {.isDark = false, .reducesMotion = reducesMotion});
        QQuickItem *button = scene.find("IconButton", QStringLiteral("Refresh now (⌘R)"));
        QQuickItem *symbol = nullptr;
        for (QQuickItem *item : scene.findAll("Symbol"))
            if (isWithin(item, button) &&
                item->property("name").toString() == QStringLiteral("arrow.clockwise"))
                symbol = item;
        ASSERT_NE(symbol, nullptr);
        scene.view().refresh();
        const auto turns = [symbol] {
            settle();
            return symbol->rotation() != 0;
        };
        EXPECT_EQ(waitFor(turns, reducesMotion ? 200ms : 10'000ms), !reducesMotion);
        scene.pass(1s);
    }
}

TEST(WindowNavigation, moreOpensItsMenu) {
    WindowScene scene("few");
    scene.click(scene.find("IconButton", QStringLiteral("Command palette and view options")));
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_TRUE(openMenu()->actions().constFirst()->text().startsWith(QStringLiteral("Command Palette…")));
    openMenu()->actions().at(1)->trigger();
    closeMenu(scene);
    EXPECT_TRUE(scene.store->showAll());
}

TEST(WindowNavigation, otherKeysOfTheWindow) {
    WindowScene scene("few");
    scene.press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(scene.done, ElementsAre("quit"));
    scene.press(Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(scene.controller->isVisible());
    QTest::keyClick(&scene.window(), Qt::Key_W, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(scene.controller->isVisible());
}

} // namespace
} // namespace tarnvale
