// The parts of the window's state that come and go: refreshing, the error, the welcome, the palette and the
// menu.

#include "presentation/window/WindowTest.h"

#include "store/ChangeCounter.h"

#include <QPointF>

#include <gmock/gmock.h>

#include <algorithm>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class MainViewMoments : public WindowTest {
protected:
    /// A web server, a database and the window's state, at which the user looks.
    void startTwo() {
        addServer(42, 3000);
        addPostgres();
        startView();
        look();
        scan();
    }

    /// How often the machine was asked for its sockets.
    [[nodiscard]] std::ptrdiff_t scans() const {
        return std::ranges::count(world.machine.questions(), "listeningSockets");
    }

    [[nodiscard]] bool storedWelcome() const { return world.settings.flag("hasSeenWelcome").value_or(false); }

    [[nodiscard]] std::vector<MenuEntry> menu() {
        std::vector<MenuEntry> entries;
        const auto connection =
            QObject::connect(view.get(), &MainViewController::menuReady,
                             [&](const QPointF &, const std::vector<MenuEntry> &all) { entries = all; });
        view->requestMenu({1, 2});
        QObject::disconnect(connection);
        return entries;
    }

    static void choose(const std::vector<MenuEntry> &entries, const char *title) {
        const auto found = std::ranges::find(entries, QString::fromUtf8(title), &MenuEntry::title);
        ASSERT_NE(found, entries.end()) << title;
        found->act();
    }
};

// Refreshing.

TEST_F(MainViewMoments, twoPressesAreOneScan) {
    startTwo();
    const std::ptrdiff_t before = scans();
    view->refresh();
    EXPECT_TRUE(view->isRefreshing());
    view->refresh();
    quiesce();
    view->refresh();
    EXPECT_EQ(scans(), before + 1);
    pass(450ms);
    EXPECT_EQ(scans(), before + 1);
    EXPECT_FALSE(view->isRefreshing());
    view->refresh();
    quiesce();
    EXPECT_EQ(scans(), before + 2);
}

TEST_F(MainViewMoments, theTurnOutlastsTheScanBy450Milliseconds) {
    startTwo();
    const ChangeCounter changes(view.get(), &MainViewController::isRefreshingChanged);
    view->refresh();
    quiesce();
    pass(449ms);
    EXPECT_TRUE(view->isRefreshing());
    pass(1ms);
    EXPECT_FALSE(view->isRefreshing());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(MainViewMoments, aRefreshThatIsUnderWayOutlivesTheWindow) {
    startTwo();
    view->refresh();
    view.reset();
    pass(1s);
    EXPECT_TRUE(store->hasScanned());
}

// The error.

TEST_F(MainViewMoments, anErrorIsShownForEightSeconds) {
    startTwo();
    const ChangeCounter errors(view.get(), &MainViewController::errorChanged);
    store->setError(QStringLiteral("one"));
    EXPECT_EQ(view->error(), QStringLiteral("one"));
    pass(7900ms);
    EXPECT_EQ(view->error(), QStringLiteral("one"));
    pass(100ms);
    EXPECT_EQ(view->error(), QString());
    EXPECT_EQ(store->error(), std::nullopt);
    EXPECT_EQ(errors.count(), 2);
}

TEST_F(MainViewMoments, aSecondErrorIsShownForItsWholeTime) {
    startTwo();
    store->setError(QStringLiteral("one"));
    pass(5s);
    store->setError(QStringLiteral("two"));
    pass(7900ms);
    EXPECT_EQ(view->error(), QStringLiteral("two"));
    pass(100ms);
    EXPECT_EQ(view->error(), QString());
}

TEST_F(MainViewMoments, anErrorThatComesAgainIsShownForItsWholeTime) {
    startTwo();
    store->setError(QStringLiteral("one"));
    pass(3s);
    store->setError(QStringLiteral("two"));
    pass(3s);
    store->setError(QStringLiteral("one"));
    pass(7900ms);
    EXPECT_EQ(view->error(), QStringLiteral("one"));
    pass(100ms);
    EXPECT_EQ(view->error(), QString());
}

TEST_F(MainViewMoments, anErrorOfTheTimeWhenNobodyLookedWaitsToBeSeen) {
    startTwo();
    lookAway();
    store->setError(QStringLiteral("one"));
    pass(1min);
    EXPECT_EQ(error(), "one");
    look();
    pass(7s);
    EXPECT_EQ(error(), "one");
    pass(1100ms);
    EXPECT_EQ(error(), "");
}

TEST_F(MainViewMoments, anErrorIsNotForgottenWhileTheWindowIsClosed) {
    startTwo();
    store->setError(QStringLiteral("one"));
    pass(5s);
    lookAway();
    pass(10s);
    EXPECT_EQ(error(), "one");
    look();
    pass(6s);
    EXPECT_EQ(error(), "one") << "its time has begun anew";
}

TEST_F(MainViewMoments, anErrorIsDismissed) {
    startTwo();
    store->setError(QStringLiteral("one"));
    view->dismissError();
    EXPECT_EQ(store->error(), std::nullopt);
}

// The welcome.

TEST_F(MainViewMoments, theWelcomeIsShownUntilItHasBeenSeen) {
    startView();
    EXPECT_TRUE(view->isWelcomeShown());
    EXPECT_FALSE(storedWelcome());
    const ChangeCounter changes(view.get(), &MainViewController::isWelcomeShownChanged);
    view->closeWelcome();
    EXPECT_FALSE(view->isWelcomeShown());
    EXPECT_TRUE(storedWelcome());
    EXPECT_EQ(changes.count(), 1);
    view->closeWelcome();
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(MainViewMoments, whoHasSeenTheWelcomeIsNotWelcomedAgain) {
    world.settings.values["hasSeenWelcome"] = true;
    startView();
    EXPECT_FALSE(view->isWelcomeShown());
    world.settings.values["hasSeenWelcome"] = false;
    view->showWelcome();
    EXPECT_TRUE(view->isWelcomeShown());
    view->closeWelcome();
    EXPECT_TRUE(storedWelcome());
}

TEST_F(MainViewMoments, aStoredValueOfAnotherKindIsNone) {
    world.settings.values["hasSeenWelcome"] = std::string("yes");
    startView();
    EXPECT_TRUE(view->isWelcomeShown());
}

TEST_F(MainViewMoments, aWelcomeThatCanNotBeStoredClosesAndSaysSo) {
    world.settings.isFull = true;
    startView();
    view->closeWelcome();
    EXPECT_FALSE(view->isWelcomeShown());
    EXPECT_NE(view->error(), QString());
}

// The palette and the menu.

TEST_F(MainViewMoments, thePaletteComesAndGoes) {
    world.settings.values["hasSeenWelcome"] = true;
    startView();
    const ChangeCounter changes(view.get(), &MainViewController::isPaletteShownChanged);
    view->togglePalette();
    EXPECT_TRUE(view->isPaletteShown());
    view->togglePalette();
    EXPECT_FALSE(view->isPaletteShown());
    view->togglePalette();
    view->closePalette();
    view->closePalette();
    EXPECT_FALSE(view->isPaletteShown());
    EXPECT_EQ(changes.count(), 4);
}

TEST_F(MainViewMoments, thePaletteWaitsForTheWelcome) {
    startView();
    view->togglePalette();
    EXPECT_FALSE(view->isPaletteShown());
}

TEST_F(MainViewMoments, theMenuHasItsTwoEntriesAndTheWindowsOwn) {
    world.settings.values["hasSeenWelcome"] = true;
    startView();
    std::vector<std::string> titles;
    for (const MenuEntry &entry : menu())
        titles.push_back(entry.title.toStdString());
    EXPECT_THAT(titles, ElementsAre("Command Palette…", "Show System Processes", "", "Settings…", "",
                                    "Close Window", "Quit Tarnvale"));
    EXPECT_EQ(menu()[0].shortcut, QStringLiteral("Ctrl+K"));
    choose(menu(), "Command Palette…");
    EXPECT_TRUE(view->isPaletteShown());
}

TEST_F(MainViewMoments, theMenuShowsAndHidesSystemProcesses) {
    startView();
    EXPECT_EQ(menu()[1].isChecked, false);
    choose(menu(), "Show System Processes");
    EXPECT_TRUE(store->showAll());
    EXPECT_EQ(menu()[1].isChecked, true);
    choose(menu(), "Show System Processes");
    EXPECT_FALSE(store->showAll());
}

TEST_F(MainViewMoments, theApplicationDoesWhatItIsAskedFor) {
    std::vector<std::string> done;
    const auto note = [&done](const char *what) { return [&done, what] { done.emplace_back(what); }; };
    startView({.openSettings = note("settings"),
               .checkForUpdates = note("updates"),
               .copyInstallCommand = {},
               .quit = note("quit")});
    const ChangeCounter closings(view.get(), &MainViewController::closeRequested);
    choose(menu(), "Settings…");
    choose(menu(), "Check for Updates…");
    choose(menu(), "Quit Tarnvale");
    choose(menu(), "Close Window");
    EXPECT_THAT(done, ElementsAre("settings", "updates", "quit"));
    EXPECT_EQ(closings.count(), 1);
}

TEST_F(MainViewMoments, withoutAnApplicationAroundItNothingHappens) {
    startView();
    view->openSettings();
    view->quit();
    EXPECT_EQ(view->error(), QString());
}

} // namespace
} // namespace tarnvale
