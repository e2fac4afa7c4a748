#include "presentation/window/WindowTest.h"

#include "store/ChangeCounter.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class MainViewControllerTest : public WindowTest {
protected:
    /// A web server, a database and the window's state, at which the user looks.
    void startTwo() {
        addServer(42, 3000);
        addPostgres();
        startView();
        look();
        scan();
    }
};

// Pages.

TEST_F(MainViewControllerTest, beginsWithTheOverview) {
    startView();
    EXPECT_EQ(view->page(), SidebarItem::overview);
    EXPECT_EQ(view->selection(), QStringLiteral("overview"));
    EXPECT_EQ(view->title(), QStringLiteral("Overview"));
    EXPECT_EQ(view->query(), QString());
    EXPECT_FALSE(view->listsPorts());
    EXPECT_FALSE(view->isRefreshing());
    EXPECT_FALSE(view->isPaletteShown());
    EXPECT_TRUE(view->isSidebarShown());
    EXPECT_EQ(view->error(), QString());
}

TEST_F(MainViewControllerTest, titleAndSubtitleAreThoseOfThePage) {
    startTwo();
    struct Page {
        SidebarItem item;
        const char *title;
        const char *subtitle;
    };
    for (const Page &page : {Page{SidebarItem::allPorts, "All Ports", "2 listening"},
                             Page{SidebarItem::web, "Web", "1 listening"},
                             Page{SidebarItem::services, "Databases & Services", "1 listening"},
                             Page{SidebarItem::other, "Other", "0 listening"},
                             Page{SidebarItem::watched, "Watched", "0 listening"},
                             Page{SidebarItem::overview, "Overview", "2 listening"},
                             Page{SidebarItem::stacks, "Stacks", "2 listening"},
                             Page{SidebarItem::sites, "Sites", "2 listening"},
                             Page{SidebarItem::activity, "Activity", "2 listening"}}) {
        view->select(page.item);
        EXPECT_EQ(view->title(), QLatin1String(page.title));
        EXPECT_EQ(view->subtitle(), QLatin1String(page.subtitle)) << page.title;
    }
}

TEST_F(MainViewControllerTest, thePageIsChosenByItsKey) {
    startTwo();
    const ChangeCounter selections(view.get(), &MainViewController::selectionChanged);
    view->navigate(QStringLiteral("services"));
    EXPECT_EQ(view->page(), SidebarItem::services);
    EXPECT_EQ(selections.count(), 1);
    view->navigate(QStringLiteral("services"));
    view->navigate(QStringLiteral("nothing of the kind"));
    view->navigate({});
    EXPECT_EQ(view->page(), SidebarItem::services);
    EXPECT_EQ(selections.count(), 1);
}

TEST_F(MainViewControllerTest, aPageOfPortsListsItsRows) {
    startTwo();
    view->select(SidebarItem::allPorts);
    EXPECT_THAT(shown(), ElementsAre("42:3000", "50:5432"));
    view->select(SidebarItem::services);
    EXPECT_THAT(shown(), ElementsAre("50:5432"));
    store->toggleWatch(record(3000));
    view->select(SidebarItem::watched);
    EXPECT_THAT(shown(), ElementsAre("42:3000"));
}

TEST_F(MainViewControllerTest, theFiltersOfThePanelDoNotApply) {
    startTwo();
    view->select(SidebarItem::allPorts);
    store->setMenuOpen(true);
    scan();
    EXPECT_THAT(shown(), ElementsAre("42:3000", "50:5432"));
}

TEST_F(MainViewControllerTest, aGroupThatLosesItsLastRowKeepsItsPage) {
    startTwo();
    view->select(SidebarItem::services);
    world.machine.end(50);
    scan();
    EXPECT_EQ(view->page(), SidebarItem::services);
    EXPECT_THAT(sidebar(), Not(Contains(testing::StartsWith("services"))));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(view->ports()->emptyMessage(), QStringLiteral("No dev servers running"));
    EXPECT_EQ(view->subtitle(), QStringLiteral("0 listening"));
    addPostgres();
    scan();
    EXPECT_THAT(sidebar(), Contains("services 1"));
    EXPECT_THAT(shown(), ElementsAre("50:5432"));
}

TEST_F(MainViewControllerTest, theEmptyMessageFollowsThePageAndTheSearch) {
    startView();
    look();
    view->select(SidebarItem::allPorts);
    EXPECT_EQ(view->ports()->emptyMessage(), QStringLiteral("No dev servers running"));
    store->setShowAll(true);
    quiesce();
    EXPECT_EQ(view->ports()->emptyMessage(), QStringLiteral("Nothing is listening"));
    view->setQuery(QStringLiteral("shop"));
    EXPECT_EQ(view->ports()->emptyMessage(), QStringLiteral("No ports match “shop”"));
    view->select(SidebarItem::watched);
    EXPECT_EQ(view->ports()->emptyMessage(), QStringLiteral("No watched ports are running"));
}

TEST_F(MainViewControllerTest, aPortIsShownOnThePageOfAllPorts) {
    startTwo();
    view->showPort(record(5432));
    EXPECT_EQ(view->page(), SidebarItem::allPorts);
    EXPECT_EQ(view->ports()->selection(), id(5432));
    EXPECT_TRUE(view->ports()->inspector()->isPresent());
}

// The search.

TEST_F(MainViewControllerTest, theFirstLetterLeavesAPageThatHasNoResults) {
    startTwo();
    for (const SidebarItem page :
         {SidebarItem::overview, SidebarItem::stacks, SidebarItem::sites, SidebarItem::activity}) {
        view->select(page);
        view->setQuery(QStringLiteral("s"));
        EXPECT_EQ(view->page(), SidebarItem::allPorts) << static_cast<int>(page);
        view->setQuery({});
        EXPECT_EQ(view->page(), SidebarItem::allPorts) << "clearing doesn't go back";
    }
}

TEST_F(MainViewControllerTest, aPageOfPortsStaysWhileOneSearches) {
    startTwo();
    for (const SidebarItem page : {SidebarItem::web, SidebarItem::services, SidebarItem::other,
                                   SidebarItem::watched, SidebarItem::allPorts}) {
        view->select(page);
        view->setQuery(QStringLiteral("sh"));
        EXPECT_EQ(view->page(), page);
        view->setQuery({});
        EXPECT_EQ(view->page(), page);
    }
}

TEST_F(MainViewControllerTest, aPageChosenWhileOneSearchesStays) {
    startTwo();
    view->setQuery(QStringLiteral("shop"));
    view->select(SidebarItem::activity);
    EXPECT_EQ(view->page(), SidebarItem::activity);
    view->setQuery(QStringLiteral("shop"));
    EXPECT_EQ(view->page(), SidebarItem::activity) << "nothing was typed";
    view->setQuery(QStringLiteral("shop "));
    EXPECT_EQ(view->page(), SidebarItem::allPorts);
}

TEST_F(MainViewControllerTest, theSearchNarrowsRowsSidebarAndSubtitle) {
    startTwo();
    store->toggleWatch(record(5432));
    view->setQuery(QStringLiteral("shop"));
    EXPECT_THAT(shown(), ElementsAre("42:3000"));
    EXPECT_EQ(view->subtitle(), QStringLiteral("1 listening"));
    EXPECT_THAT(sidebar(), ElementsAre("overview", "allPorts 1", "web 1", "watched", "stacks", "activity"));
    EXPECT_EQ(view->allRows().size(), 2u) << "the palette knows them all";
    view->setQuery({});
    EXPECT_THAT(sidebar(), ElementsAre("overview", "allPorts 2", "web 1", "services 1", "watched 1", "stacks",
                                       "activity"));
}

TEST_F(MainViewControllerTest, aSearchForBlanksFindsEverything) {
    startTwo();
    view->setQuery(QStringLiteral("  "));
    EXPECT_THAT(shown(), ElementsAre("42:3000", "50:5432"));
}

// The sidebar.

TEST_F(MainViewControllerTest, withoutLocalSitesThereIsNoRowForThem) {
    startTwo();
    EXPECT_THAT(view->sites(), IsEmpty());
    EXPECT_THAT(sidebar(), ElementsAre("overview", "allPorts 2", "web 1", "services 1", "watched", "stacks",
                                       "activity"));
}

TEST_F(MainViewControllerTest, localSitesAreReadOnceWhenTheWindowIsFirstSeen) {
    addSites({"shop", "blog"});
    startView();
    quiesce();
    EXPECT_THAT(sidebar(), Not(Contains("sites 2"))) << "nobody looks yet";
    const ChangeCounter changes(view.get(), &MainViewController::sitesChanged);
    look();
    EXPECT_THAT(sidebar(), Contains("sites 2"));
    addSites({"third"});
    lookAway();
    look();
    EXPECT_THAT(sidebar(), Contains("sites 2"));
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(MainViewControllerTest, stacksAreCounted) {
    startTwo();
    store->saveStack("shop", {{"npm run dev", "/home/me/shop"}});
    quiesce();
    EXPECT_THAT(sidebar(), Contains("stacks 1"));
}

TEST_F(MainViewControllerTest, theFirstLetterOnAPageWithoutPortsShowsTheRowsOnce) {
    startTwo();
    look();
    view->select(SidebarItem::stacks);
    const ChangeCounter showings(view.get(), &MainViewController::rowsChanged);
    view->setQuery(QStringLiteral("s"));
    EXPECT_EQ(view->page(), SidebarItem::allPorts);
    EXPECT_EQ(showings.count(), 1);
}

TEST_F(MainViewControllerTest, watchedRowsAreCountedNotWatchedPorts) {
    startTwo();
    world.machine.listen(42, 3001);
    scan();
    store->toggleWatch(record(3000));
    store->toggleWatch(record(3001));
    quiesce();
    EXPECT_THAT(sidebar(), Contains("watched 1"));
}

TEST_F(MainViewControllerTest, theRowOfThePageIsKnown) {
    startTwo();
    EXPECT_EQ(view->sidebarIndex(), 0);
    view->select(SidebarItem::services);
    EXPECT_EQ(view->sidebarIndex(), 3);
    world.machine.end(42);
    scan();
    EXPECT_EQ(view->sidebarIndex(), 2) << "the web servers have no row any more";
    world.machine.end(50);
    scan();
    EXPECT_EQ(view->sidebarIndex(), -1);
}

TEST_F(MainViewControllerTest, theSidebarIsHiddenAndShown) {
    startView();
    view->toggleSidebar();
    EXPECT_FALSE(view->isSidebarShown());
    view->toggleSidebar();
    EXPECT_TRUE(view->isSidebarShown());
}

TEST_F(MainViewControllerTest, theKeysOfThePanelAreThoseInForce) {
    startView();
    EXPECT_TRUE(view->hotKeyCaps().isEmpty()) << "none is taken yet";
    const ChangeCounter changes(view.get(), &MainViewController::hotKeyChanged);
    hotKey->setUp();
    quiesce();
    EXPECT_GT(changes.count(), 0);
    EXPECT_FALSE(view->hotKeyCaps().isEmpty());
}

// What is worked out, and when.

TEST_F(MainViewControllerTest, nothingIsWorkedOutWhileNobodyLooks) {
    startTwo();
    view->select(SidebarItem::allPorts);
    lookAway();
    const ChangeCounter rows(view.get(), &MainViewController::rowsChanged);
    addServer(60, 8000, "node other.js", "/home/me/other");
    scan();
    pass(10s);
    EXPECT_EQ(rows.count(), 0);
    EXPECT_EQ(shown().size(), 2u);
    store->setWindowVisible(true);
    EXPECT_EQ(shown().size(), 3u) << "at once, before anything is drawn";
}

TEST_F(MainViewControllerTest, severalChangesAtOnceAreOneUpdate) {
    startTwo();
    const ChangeCounter rows(view.get(), &MainViewController::rowsChanged);
    store->toggleWatch(record(3000));
    store->toggleWatch(record(5432));
    store->setShowAll(true);
    EXPECT_EQ(rows.count(), 0);
    settle();
    EXPECT_EQ(rows.count(), 1);
}

TEST_F(MainViewControllerTest, agesGrowWhileNothingChanges) {
    startTwo();
    view->select(SidebarItem::allPorts);
    const std::vector<std::string> before = texts(view->ports()->rows(), "subtitle");
    pass(3min);
    EXPECT_NE(texts(view->ports()->rows(), "subtitle"), before);
}

TEST_F(MainViewControllerTest, whatTheUserChoseIsKeptWhileTheWindowIsClosed) {
    startTwo();
    view->setQuery(QStringLiteral("shop"));
    view->select(SidebarItem::web);
    view->ports()->select(id(3000));
    view->toggleSidebar();
    view->ports()->toggleInspector();
    lookAway();
    pass(1min);
    look();
    EXPECT_EQ(view->page(), SidebarItem::web);
    EXPECT_EQ(view->query(), QStringLiteral("shop"));
    EXPECT_EQ(view->ports()->selection(), id(3000));
    EXPECT_FALSE(view->isSidebarShown());
    EXPECT_FALSE(view->ports()->isInspectorShown());
}

} // namespace
} // namespace tarnvale
