// What the keys of the search field do.

#include "presentation/panel/PanelTest.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Keyboard : public PanelTest {
protected:
    /// Three rows, of which the last is no website.
    void startThree() {
        addServer(42, 3000);
        addServer(43, 4000, "node api.js", "/home/me/api");
        addPostgres();
        startList();
        open();
    }
};

TEST_F(Keyboard, downSelectsTheFirstRowAndUpTheLast) {
    startThree();
    EXPECT_TRUE(press(Qt::Key_Down));
    EXPECT_EQ(list->selection(), id(3000));
    EXPECT_EQ(list->selectedIndex(), 0);
    list->setQuery(QStringLiteral(" "));
    EXPECT_TRUE(press(Qt::Key_Up));
    EXPECT_EQ(list->selection(), id(5432));
    EXPECT_EQ(list->selectedIndex(), 2);
}

TEST_F(Keyboard, theArrowsWalkTheRowsWithoutLeavingThem) {
    startThree();
    for (const auto &[key, port] : {std::pair{Qt::Key_Down, 3000},
                                    {Qt::Key_Down, 4000},
                                    {Qt::Key_Down, 5432},
                                    {Qt::Key_Down, 5432},
                                    {Qt::Key_Up, 4000},
                                    {Qt::Key_Up, 3000},
                                    {Qt::Key_Up, 3000}}) {
        EXPECT_TRUE(press(key));
        EXPECT_EQ(list->selection(), id(port));
    }
}

TEST_F(Keyboard, theArrowsAreIgnoredWithoutRows) {
    startList();
    EXPECT_FALSE(press(Qt::Key_Down));
    EXPECT_FALSE(press(Qt::Key_Up));
    EXPECT_EQ(list->selection(), QString());
}

TEST_F(Keyboard, theArrowsBeginAnewWhenTheSelectedRowHasGone) {
    startThree();
    list->select(id(4000));
    world.machine.end(43);
    scan();
    EXPECT_EQ(list->selectedIndex(), -1);
    EXPECT_TRUE(press(Qt::Key_Down));
    EXPECT_EQ(list->selection(), id(3000));
}

TEST_F(Keyboard, theSelectionStaysWithItsRowWhenOthersComeBeforeIt) {
    startThree();
    list->select(id(4000));
    const QSignalSpy selections(list.get(), &PortListController::selectionChanged);
    const QSignalSpy indices(list.get(), &PortListController::selectedIndexChanged);
    addServer(60, 2000, "node early.js", "/home/me/early");
    scan();
    EXPECT_EQ(list->selection(), id(4000));
    EXPECT_EQ(list->selectedIndex(), 2);
    EXPECT_EQ(indices.count(), 1);
    EXPECT_EQ(selections.count(), 0) << "the list stays where the user has scrolled it to";
}

TEST_F(Keyboard, aMoveDisarms) {
    startThree();
    list->stopInTwoSteps(id(3000));
    press(Qt::Key_Down);
    EXPECT_EQ(list->armedKill(), QString());
}

TEST_F(Keyboard, returnOpensAWebsiteAlone) {
    startThree();
    EXPECT_FALSE(press(Qt::Key_Return)) << "nothing is selected";
    list->select(id(4000));
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_TRUE(press(Qt::Key_Enter));
    list->select(id(5432));
    EXPECT_FALSE(press(Qt::Key_Return));
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4000", "http://localhost:4000"));
}

TEST_F(Keyboard, returnOpensWhatIsSelectedWhileSomethingIsTyped) {
    startThree();
    list->setQuery(QStringLiteral("api"));
    press(Qt::Key_Down);
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:4000"));
}

TEST_F(Keyboard, lettersActOnTheSelectedRow) {
    addAgentsServer(43, 4000);
    startList();
    open();
    world.desktop.running.insert("/usr/share/applications/Some Editor.desktop");
    for (const Qt::Key key : {Qt::Key_O, Qt::Key_T, Qt::Key_K})
        EXPECT_FALSE(press(key)) << "nothing is selected";
    list->select(id(4000));
    EXPECT_TRUE(press(Qt::Key_O));
    EXPECT_TRUE(press(Qt::Key_O, Qt::ShiftModifier));
    EXPECT_EQ(world.desktop.opened.size(), 2u);
    EXPECT_TRUE(press(Qt::Key_T));
    EXPECT_THAT(world.desktop.focused, ElementsAre("/usr/share/applications/Some Editor.desktop"));
    EXPECT_TRUE(press(Qt::Key_K, Qt::ShiftModifier));
    EXPECT_EQ(list->armedKill(), id(4000));
    EXPECT_TRUE(press(Qt::Key_K));
    quiesce();
    EXPECT_THAT(stopped(), ElementsAre(43));
}

TEST_F(Keyboard, aLetterThatCannotActIsTyped) {
    startThree();
    list->select(id(5432));
    EXPECT_FALSE(press(Qt::Key_O)) << "no website";
    EXPECT_FALSE(press(Qt::Key_T)) << "no application";
    EXPECT_FALSE(press(Qt::Key_X));
}

TEST_F(Keyboard, lettersAreTypedOnceSomethingStandsInTheField) {
    startThree();
    for (const QString &query : {QStringLiteral("api"), QStringLiteral(" ")}) {
        list->setQuery(query);
        list->select(id(4000));
        for (const Qt::Key key : {Qt::Key_O, Qt::Key_T, Qt::Key_K})
            EXPECT_FALSE(press(key));
    }
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_EQ(list->armedKill(), QString());
}

TEST_F(Keyboard, lettersWithAModifierBelongToTheField) {
    startThree();
    list->select(id(3000));
    for (const Qt::KeyboardModifier held : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        for (const Qt::Key key : {Qt::Key_O, Qt::Key_T, Qt::Key_K})
            EXPECT_FALSE(press(key, held));
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_EQ(list->armedKill(), QString());
}

TEST_F(Keyboard, controlDeleteStopsInTwoStepsEvenWhileSomethingIsTyped) {
    startThree();
    EXPECT_FALSE(press(Qt::Key_Delete, Qt::ControlModifier)) << "nothing is selected";
    list->setQuery(QStringLiteral("shop"));
    list->select(id(3000));
    EXPECT_FALSE(press(Qt::Key_Delete)) << "that one edits the text";
    EXPECT_TRUE(press(Qt::Key_Delete, Qt::ControlModifier));
    EXPECT_EQ(list->armedKill(), id(3000));
    EXPECT_TRUE(press(Qt::Key_Backspace, Qt::ControlModifier));
    quiesce();
    EXPECT_THAT(stopped(), ElementsAre(42));
}

TEST_F(Keyboard, aKeyThatIsHeldIsOnePress) {
    addAgentsServer(43, 4000);
    startList();
    open();
    list->select(id(4000));
    const QSignalSpy menus(list.get(), &PortListController::menuKeyPressed);
    for (const Qt::Key key : {Qt::Key_O, Qt::Key_T, Qt::Key_K, Qt::Key_Return, Qt::Key_Menu})
        EXPECT_TRUE(list->handleKey(key, 0, true)) << "nor is it typed";
    quiesce();
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_EQ(list->armedKill(), QString());
    EXPECT_EQ(store->error(), std::nullopt);
    EXPECT_EQ(menus.count(), 0);
    EXPECT_FALSE(list->handleKey(Qt::Key_X, 0, true));
}

TEST_F(Keyboard, theArrowsAndControlDeleteRepeat) {
    startThree();
    EXPECT_TRUE(list->handleKey(Qt::Key_Down, 0, true));
    EXPECT_TRUE(list->handleKey(Qt::Key_Down, 0, true));
    EXPECT_EQ(list->selection(), id(4000));
    EXPECT_TRUE(list->handleKey(Qt::Key_Delete, Qt::ControlModifier, true));
    EXPECT_TRUE(list->handleKey(Qt::Key_Delete, Qt::ControlModifier, true));
    quiesce();
    EXPECT_THAT(stopped(), ElementsAre(43));
}

TEST_F(Keyboard, escClearsTheFieldAndThenCloses) {
    startThree();
    const QSignalSpy closing(list.get(), &PortListController::closeRequested);
    list->setQuery(QStringLiteral(" "));
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_EQ(list->query(), QString());
    EXPECT_EQ(closing.count(), 0);
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_EQ(closing.count(), 1);
}

TEST_F(Keyboard, theMenuKeyAsksForTheMenuOfTheSelectedRow) {
    startThree();
    const QSignalSpy asked(list.get(), &PortListController::menuKeyPressed);
    EXPECT_FALSE(press(Qt::Key_Menu)) << "nothing is selected";
    list->select(id(5432));
    EXPECT_TRUE(press(Qt::Key_Menu));
    EXPECT_TRUE(press(Qt::Key_F10, Qt::ShiftModifier));
    EXPECT_TRUE(press(Qt::Key_Return, Qt::ControlModifier));
    EXPECT_FALSE(press(Qt::Key_F10));
    ASSERT_EQ(asked.count(), 3);
    EXPECT_EQ(asked.at(0).at(0).toString(), id(5432));
}

TEST_F(Keyboard, onlyARowOfTheListCanBeSelected) {
    startThree();
    list->select(QStringLiteral("1:1"));
    EXPECT_EQ(list->selection(), QString());
}

} // namespace
} // namespace tarnvale
