// When the panel opens, closes and stays closed, and where it is.

#include "presentation/panel/MenuBarController.h"
#include "commands/hotkey/FakeRegistrar.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/popUpMenu.h"
#include "presentation/panel/PanelTest.h"
#include "presentation/panel/registerPanel.h"

#include <QApplication>
#include <QMenu>
#include <QQuickItem>
#include <QScreen>
#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class MenuBar : public PanelTest {
protected:
    void SetUp() override {
        Appearance::instance().setOverride(std::nullopt, true);
        addServer(42, 3000);
        start();
        addServer(43, 2000, "node docs.js",
                  "/home/me/docs"); // a first event, so that the later ones add no section
        scan();
        registerPanel(engine);
        menuBar =
            std::make_unique<MenuBarController>(*store, world.platform(), engine, hotKey, PanelActions(),
                                                QDBusConnection(QStringLiteral("none")));
    }

    void TearDown() override {
        menuBar.reset();
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }

    [[nodiscard]] PanelWindow &panel() { return menuBar->panel(); }
    [[nodiscard]] bool isOpen() const { return menuBar->isOpen() && store->isMenuOpen(); }

    /// From now on the panel fades, in real time.
    void letItFade() {
        Appearance::instance().setOverride(std::nullopt, false);
        panel().contentItem()->childItems().constFirst()->setProperty("isTranslucent", true);
    }

    /// A watched port, of which the process goes.
    void loseWatched() {
        store->toggleWatch(record(3000));
        quiesce();
        world.machine.end(42);
        scan();
    }

    GlobalHotKey hotKey{world.settings, std::make_unique<FakeRegistrar>()};
    QQmlEngine engine;
    std::unique_ptr<MenuBarController> menuBar;
};

TEST_F(MenuBar, thePanelIsThereBeforeItIsFirstOpened) {
    EXPECT_FALSE(panel().isVisible());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(panel().fittingSize().width(), 400);
    EXPECT_GT(panel().fittingSize().height(), 100);
}

TEST_F(MenuBar, aClickOpensAndAnotherCloses) {
    menuBar->toggle();
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(panel().isVisible());
    menuBar->toggle();
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(store->isMenuOpen());
    EXPECT_TRUE(waitFor([this] { return !panel().isVisible(); }));
}

TEST_F(MenuBar, twoClicksWithinAQuarterOfASecondLeaveThePanelClosed) {
    menuBar->toggle();
    menuBar->toggle();
    for (const auto step : {0ms, 100ms, 150ms}) { // 250 ms in all
        world.clock.advance(step);
        menuBar->toggle();
        EXPECT_FALSE(isOpen());
    }
    world.clock.advance(1ms);
    menuBar->toggle();
    EXPECT_TRUE(isOpen());
}

TEST_F(MenuBar, theClickThatTakesTheKeyboardAwayDoesNotOpenThePanelAgain) {
    menuBar->toggle();
    QWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(waitFor([this] { return !isOpen(); })) << "it closes when it loses the keyboard";
    menuBar->toggle();
    EXPECT_FALSE(isOpen());
    world.clock.advance(300ms);
    menuBar->toggle();
    EXPECT_TRUE(isOpen());
}

TEST_F(MenuBar, thePanelStaysOpenUnderAMenuOfItsOwn) {
    menuBar->open();
    QMenu *const menu = popUpMenu({menuAction(QStringLiteral("Act"), [] {})}, QPoint(10, 10), &panel());
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(waitFor([this] { return !panel().isActive(); }));
    EXPECT_TRUE(isOpen());
    menu->close();
    settle();
}

TEST_F(MenuBar, escCloses) {
    menuBar->open();
    QTest::keyClick(&panel(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(MenuBar, escClosesWhereverTheFocusIs) {
    menuBar->open();
    for (int times = 0; times < 3; ++times)
        QTest::keyClick(&panel(), Qt::Key_Tab);
    QTest::keyClick(&panel(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(MenuBar, openingGivesTheKeyboardToTheSearch) {
    menuBar->open();
    QTest::keyClick(&panel(), Qt::Key_7);
    EXPECT_EQ(menuBar->list().query(), QStringLiteral("7"));
    menuBar->close();
    world.clock.advance(1s);
    menuBar->open();
    QTest::keyClick(&panel(), Qt::Key_8);
    EXPECT_EQ(menuBar->list().query(), QStringLiteral("78")) << "what was typed is still there";
}

TEST_F(MenuBar, aClosedPanelCannotBeClosedAgain) {
    menuBar->close();
    menuBar->toggle();
    EXPECT_TRUE(isOpen()) << "nothing was closed just now";
}

TEST_F(MenuBar, aClockThatWasSetBackDoesNotKeepThePanelClosed) {
    menuBar->open();
    menuBar->close();
    world.clock.advance(-1h);
    menuBar->toggle();
    EXPECT_TRUE(isOpen());
}

TEST_F(MenuBar, openingWhileItFadesOutKeepsItOpen) {
    menuBar->open();
    letItFade();
    menuBar->close();
    EXPECT_TRUE(panel().isVisible());
    EXPECT_TRUE(panel().isClosing());
    menuBar->toggle();
    EXPECT_TRUE(panel().isClosing()) << "not within a quarter of a second";
    world.clock.advance(300ms);
    menuBar->toggle();
    EXPECT_FALSE(panel().isClosing());
    EXPECT_FALSE(waitFor([this] { return !panel().isVisible(); }, 300ms))
        << "the end of that fade hides nothing";
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(panel().contentItem()->opacity(), 1);
}

TEST_F(MenuBar, theFadesEndHidesThePanel) {
    menuBar->open();
    letItFade();
    menuBar->close();
    EXPECT_FALSE(store->isMenuOpen()) << "at once";
    EXPECT_TRUE(waitFor([this] { return !panel().isVisible(); }));
    EXPECT_FALSE(panel().isClosing());
}

TEST_F(MenuBar, openingCountsAsHavingSeenTheAlarm) {
    loseWatched();
    EXPECT_THAT(store->downWatchedPorts(), ElementsAre(3000));
    menuBar->open();
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty());
}

TEST_F(MenuBar, anAlarmWhileThePanelIsOpenStaysUntilItIsOpenedAgain) {
    menuBar->open();
    loseWatched();
    EXPECT_THAT(store->downWatchedPorts(), ElementsAre(3000));
    menuBar->close();
    EXPECT_THAT(store->downWatchedPorts(), ElementsAre(3000));
    world.clock.advance(1s);
    menuBar->open();
    EXPECT_THAT(store->downWatchedPorts(), IsEmpty());
}

TEST_F(MenuBar, thePanelStandsInsideItsScreen) {
    menuBar->open();
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(room.contains(panel().geometry()));
    EXPECT_EQ(panel().geometry().right(), room.right() - 8) << "without a tray in its corner";
}

TEST_F(MenuBar, thePanelHangsBelowTheClickInsideTheEdge) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    menuBar->open(QPoint(room.center().x(), room.top()));
    EXPECT_NEAR(panel().geometry().center().x(), room.center().x(), 1);
    EXPECT_LT(panel().y(), room.top() + 60);
}

TEST_F(MenuBar, rowsThatComeAndGoMoveOnlyTheBottomEdge) {
    menuBar->open();
    quiesce();
    const QRect before = panel().geometry();
    for (int number = 0; number < 4; ++number)
        addServer(50 + number, 4000 + number, "node api.js", "/home/me/api-" + std::to_string(number));
    scan();
    panel().grabWindow();
    const QRect grown = panel().geometry();
    EXPECT_EQ(grown.height(), before.height() + 4 * 50);
    EXPECT_EQ(grown.topLeft(), before.topLeft());
    EXPECT_EQ(panel().contentItem()->childItems().constFirst()->height(), grown.height());
    menuBar->list().setQuery(QStringLiteral("4000"));
    panel().grabWindow();
    EXPECT_EQ(panel().geometry().topLeft(), before.topLeft());
    EXPECT_EQ(panel().height(), before.height() - 50) << "one row of the two";
}

TEST_F(MenuBar, aPanelThatChangedWhileClosedOpensAtItsSize) {
    menuBar->open();
    menuBar->close();
    quiesce();
    const QRect before = panel().geometry();
    for (int number = 0; number < 3; ++number)
        addServer(50 + number, 4000 + number, "node api.js", "/home/me/api-" + std::to_string(number));
    scan();
    world.clock.advance(1s);
    menuBar->open();
    EXPECT_EQ(panel().height(), before.height() + 3 * 50);
    EXPECT_EQ(panel().geometry().topLeft(), before.topLeft());
}

TEST_F(MenuBar, thePanelIsPlacedAnewWhenAScreenGoes) {
    menuBar->open();
    const QRect place = panel().geometry();
    panel().setGeometry(place.translated(-100, 100));
    Q_EMIT qGuiApp->screenRemoved(QGuiApplication::primaryScreen());
    EXPECT_EQ(panel().geometry(), place);
}

TEST_F(MenuBar, aMenuThatComesAfterThePanelHasClosedIsNotShown) {
    menuBar->open();
    const QString id = QString::fromStdString(record(3000).id());
    menuBar->list().requestMenu(id, {10, 10});
    menuBar->close();
    quiesce();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    world.clock.advance(1s);
    menuBar->open();
    menuBar->list().requestMenu(id, {10, 10});
    quiesce();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QApplication::activePopupWidget()->close();
    settle();
}

TEST_F(MenuBar, theTrayOpensThePanelWhereItWasClicked) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    Q_EMIT menuBar->tray().activated(QPoint(room.center().x(), room.top()));
    EXPECT_TRUE(isOpen());
    EXPECT_NEAR(panel().geometry().center().x(), room.center().x(), 1);
    Q_EMIT menuBar->tray().menuRequested(std::nullopt);
    EXPECT_FALSE(isOpen()) << "any click does the same";
}

TEST_F(MenuBar, thePanelMayGoWhileItIsOpen) {
    menuBar->open();
    menuBar->list().requestMenu(QString::fromStdString(record(3000).id()), {});
    menuBar.reset();
    pass(10s);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

} // namespace
} // namespace tarnvale
