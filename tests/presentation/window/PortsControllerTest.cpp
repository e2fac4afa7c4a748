#include "presentation/window/WindowTest.h"

#include "store/ChangeCounter.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class PortsControllerTest : public WindowTest {
protected:
    /// Two web servers and a database, all of which are listed.
    void startThree() {
        addServer(42, 3000);
        addServer(43, 4000, "node api.js", "/home/me/api");
        addPostgres();
        startView();
        look();
        scan();
        view->select(SidebarItem::allPorts);
        ASSERT_THAT(shown(), ElementsAre("42:3000", "43:4000", "50:5432"));
    }

    [[nodiscard]] PortsController &ports() const { return *view->ports(); }

    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, bool isRepeat = false) const {
        return ports().handleKey(key, static_cast<int>(modifiers.toInt()), isRepeat);
    }
};

// The arrows.

TEST_F(PortsControllerTest, theArrowsStepThroughAllSections) {
    startThree();
    for (const std::int64_t port : {3000, 4000, 5432, 5432}) { // held at the end
        EXPECT_TRUE(press(Qt::Key_Down));
        EXPECT_EQ(ports().selection(), id(port));
    }
    for (const std::int64_t port : {4000, 3000, 3000}) {
        EXPECT_TRUE(press(Qt::Key_Up));
        EXPECT_EQ(ports().selection(), id(port));
    }
}

TEST_F(PortsControllerTest, withoutASelectionUpTakesTheLast) {
    startThree();
    press(Qt::Key_Up);
    EXPECT_EQ(ports().selection(), id(5432));
}

TEST_F(PortsControllerTest, anArrowDisarmsAStop) {
    startThree();
    press(Qt::Key_Down);
    press(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(ports().armedKill(), id(3000));
    press(Qt::Key_Down);
    EXPECT_EQ(ports().armedKill(), QString());
}

TEST_F(PortsControllerTest, withoutRowsNoKeyDoesAnything) {
    startView();
    look();
    view->select(SidebarItem::allPorts);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Menu})
        EXPECT_FALSE(press(key)) << key;
    EXPECT_FALSE(press(Qt::Key_Delete, Qt::ControlModifier));
    EXPECT_EQ(ports().selection(), QString());
}

TEST_F(PortsControllerTest, arrowsWithOtherKeysHeldAreLeftToOthers) {
    startThree();
    for (const Qt::KeyboardModifier held : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        EXPECT_FALSE(press(Qt::Key_Down, held));
    EXPECT_EQ(ports().selection(), QString());
    EXPECT_TRUE(press(Qt::Key_Down, Qt::KeypadModifier));
}

// Return.

TEST_F(PortsControllerTest, returnOpensAWebServer) {
    startThree();
    press(Qt::Key_Down);
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_TRUE(press(Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000", "http://localhost:3000"));
}

TEST_F(PortsControllerTest, returnThatIsHeldOpensOnce) {
    startThree();
    press(Qt::Key_Down);
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_TRUE(press(Qt::Key_Return, {}, true));
    EXPECT_EQ(world.desktop.opened.size(), 1u);
}

TEST_F(PortsControllerTest, returnOpensNothingElse) {
    startThree();
    press(Qt::Key_Up);
    EXPECT_FALSE(press(Qt::Key_Return)) << "a database";
    ports().openInBrowser(ports().selection());
    press(Qt::Key_Up);
    EXPECT_FALSE(press(Qt::Key_Return, Qt::ControlModifier));
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(PortsControllerTest, otherKeysAreLeftToOthers) {
    startThree();
    press(Qt::Key_Down);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_K, Qt::Key_Space, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Left,
                              Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_F10})
        EXPECT_FALSE(press(key)) << key;
    EXPECT_FALSE(press(Qt::Key_C, Qt::ControlModifier));
    EXPECT_FALSE(press(Qt::Key_Delete, Qt::ControlModifier | Qt::AltModifier));
    EXPECT_EQ(ports().armedKill(), QString());
}

// The stop.

TEST_F(PortsControllerTest, aStopTakesTwoPresses) {
    startThree();
    press(Qt::Key_Down);
    EXPECT_TRUE(press(Qt::Key_Delete, Qt::ControlModifier));
    quiesce();
    EXPECT_EQ(ports().armedKill(), id(3000));
    EXPECT_THAT(stopped(), IsEmpty());
    pass(3900ms);
    EXPECT_TRUE(press(Qt::Key_Backspace, Qt::ControlModifier));
    pass(1s);
    EXPECT_THAT(stopped(), ElementsAre(42));
    EXPECT_THAT(shown(), ElementsAre("43:4000", "50:5432"));
}

TEST_F(PortsControllerTest, aKeyThatIsHeldCountsAsPresses) {
    startThree();
    press(Qt::Key_Down);
    press(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_TRUE(press(Qt::Key_Delete, Qt::ControlModifier, true));
    pass(1s);
    EXPECT_THAT(stopped(), ElementsAre(42));
}

TEST_F(PortsControllerTest, aLateSecondPressArmsAgain) {
    startThree();
    press(Qt::Key_Down);
    press(Qt::Key_Delete, Qt::ControlModifier);
    pass(4s);
    EXPECT_EQ(ports().armedKill(), QString());
    press(Qt::Key_Delete, Qt::ControlModifier);
    quiesce();
    EXPECT_EQ(ports().armedKill(), id(3000));
    EXPECT_THAT(stopped(), IsEmpty());
}

TEST_F(PortsControllerTest, withoutASelectedRowNothingIsArmed) {
    startThree();
    EXPECT_FALSE(press(Qt::Key_Delete, Qt::ControlModifier));
    EXPECT_EQ(ports().armedKill(), QString());
}

TEST_F(PortsControllerTest, theListsStopIsNotTheInspectors) {
    startThree();
    press(Qt::Key_Down);
    press(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_FALSE(ports().inspector()->armedKill());
}

// The menu.

TEST_F(PortsControllerTest, theMenuKeyAsksForTheMenuOfTheSelectedRow) {
    startThree();
    std::vector<QString> asked;
    QObject::connect(&ports(), &PortsController::menuKeyPressed, &ports(),
                     [&](const QString &rowId) { asked.push_back(rowId); });
    EXPECT_FALSE(press(Qt::Key_Menu));
    press(Qt::Key_Down);
    EXPECT_TRUE(press(Qt::Key_Menu));
    EXPECT_TRUE(press(Qt::Key_F10, Qt::ShiftModifier));
    EXPECT_TRUE(press(Qt::Key_Menu, {}, true));
    EXPECT_THAT(asked, ElementsAre(id(3000), id(3000)));
}

TEST_F(PortsControllerTest, theMenuIsThatOfThePort) {
    startThree();
    std::vector<MenuEntry> entries;
    QPointF place;
    QObject::connect(&ports(), &PortsController::menuReady, &ports(),
                     [&](const QPointF &where, const std::vector<MenuEntry> &all) {
                         place = where;
                         entries = all;
                     });
    ports().requestMenu(id(5432), {30, 40});
    quiesce();
    ASSERT_FALSE(entries.empty());
    EXPECT_EQ(entries.front().title, QStringLiteral("Copy Address"));
    EXPECT_EQ(place, QPointF(30, 40));
}

// The selection.

TEST_F(PortsControllerTest, theSelectionIsKeptWhileItsRowIsAway) {
    startThree();
    const QString shop = id(3000);
    ports().select(shop);
    EXPECT_TRUE(ports().inspector()->isPresent());
    world.machine.end(42);
    scan();
    EXPECT_EQ(ports().selection(), shop);
    EXPECT_EQ(ports().selectedIndex(), -1);
    EXPECT_FALSE(ports().inspector()->isPresent()) << "no port is selected";
    addServer(42, 3000);
    scan();
    EXPECT_EQ(ports().selectedIndex(), 0);
    EXPECT_TRUE(ports().inspector()->isPresent());
    EXPECT_EQ(ports().inspector()->rowId(), shop);
}

TEST_F(PortsControllerTest, anotherProcessOnThePortIsAnotherRow) {
    startThree();
    ports().select(id(3000));
    world.machine.end(42);
    addServer(77, 3000);
    scan();
    EXPECT_EQ(ports().selectedIndex(), -1);
    EXPECT_FALSE(ports().inspector()->isPresent());
}

TEST_F(PortsControllerTest, theSelectionIsKeptFromPageToPage) {
    startThree();
    ports().select(id(3000));
    view->select(SidebarItem::services);
    EXPECT_FALSE(ports().inspector()->isPresent());
    view->select(SidebarItem::web);
    EXPECT_TRUE(ports().inspector()->isPresent());
    EXPECT_EQ(ports().selectedIndex(), 0);
}

TEST_F(PortsControllerTest, aFurtherPortStandsForItsRow) {
    startThree();
    world.machine.listen(43, 4001);
    scan();
    ports().selectPort(record(4001));
    EXPECT_EQ(ports().selection(), id(4000));
    ports().selectPort(record(3000));
    EXPECT_EQ(ports().selection(), id(3000));
}

TEST_F(PortsControllerTest, aPortMayBeSelectedBeforeItIsListed) {
    startThree();
    ports().selectPort({.pid = 90, .command = "node", .port = 9000});
    EXPECT_EQ(ports().selection(), QStringLiteral("90:9000"));
    EXPECT_EQ(ports().selectedIndex(), -1);
    EXPECT_FALSE(ports().inspector()->isPresent());
    addServer(90, 9000, "node late.js", "/home/me/late");
    scan();
    EXPECT_GE(ports().selectedIndex(), 0);
    EXPECT_TRUE(ports().inspector()->isPresent());
}

TEST_F(PortsControllerTest, theInspectorFollowsTheSelection) {
    startThree();
    press(Qt::Key_Down);
    EXPECT_EQ(ports().inspector()->facts().title, QStringLiteral("shop"));
    press(Qt::Key_Down);
    EXPECT_EQ(ports().inspector()->facts().title, QStringLiteral("api"));
}

TEST_F(PortsControllerTest, theInspectorIsShownAtFirst) {
    startThree();
    const ChangeCounter changes(&ports(), &PortsController::isInspectorShownChanged);
    EXPECT_TRUE(ports().isInspectorShown());
    ports().toggleInspector();
    EXPECT_FALSE(ports().isInspectorShown());
    ports().toggleInspector();
    EXPECT_TRUE(ports().isInspectorShown());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(PortsControllerTest, aRowsCopyIsConfirmedForAWhile) {
    startThree();
    ports().copyAddress(id(3000));
    EXPECT_EQ(ports().copied(), id(3000));
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000"));
    pass(1100ms);
    EXPECT_EQ(ports().copied(), id(3000));
    pass(100ms);
    EXPECT_EQ(ports().copied(), QString());
}

} // namespace
} // namespace tarnvale
