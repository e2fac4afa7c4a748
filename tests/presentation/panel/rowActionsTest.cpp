// What the buttons of a row do, and for how long they stay armed.

#include "presentation/panel/PanelTest.h"

#include "platform/background.h"

#include <QSemaphore>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class RowActions : public PanelTest {
protected:
    void startTwo() {
        addServer(42, 3000);
        addServer(43, 4000, "node api.js", "/home/me/api");
        startList();
        open();
    }
};

TEST_F(RowActions, aStopTakesTwoClicksWithinFourSeconds) {
    startTwo();
    list->stopInTwoSteps(id(3000));
    EXPECT_EQ(list->armedKill(), id(3000));
    pass(3900ms);
    list->stopInTwoSteps(id(3000));
    EXPECT_EQ(list->armedKill(), QString());
    pass(1s);
    EXPECT_THAT(stopped(), ElementsAre(42));
    EXPECT_THAT(shown(), ElementsAre("4000"));
}

TEST_F(RowActions, aLateSecondClickArmsAgain) {
    startTwo();
    list->stopInTwoSteps(id(3000));
    pass(4100ms);
    EXPECT_EQ(list->armedKill(), QString());
    list->stopInTwoSteps(id(3000));
    quiesce();
    EXPECT_EQ(list->armedKill(), id(3000));
    EXPECT_THAT(stopped(), IsEmpty());
}

TEST_F(RowActions, armingARowDisarmsTheOther) {
    startTwo();
    list->stopInTwoSteps(id(3000));
    list->stopInTwoSteps(id(4000));
    EXPECT_EQ(list->armedKill(), id(4000));
    list->stopInTwoSteps(id(3000));
    quiesce();
    EXPECT_EQ(list->armedKill(), id(3000));
    EXPECT_THAT(stopped(), IsEmpty());
}

TEST_F(RowActions, aTimerThatHasOutlivedItsRowDisarmsNoOther) {
    startTwo();
    list->stopInTwoSteps(id(3000));
    pass(2s);
    list->stopInTwoSteps(id(4000));
    pass(2100ms);
    EXPECT_EQ(list->armedKill(), id(4000));
    pass(2s);
    EXPECT_EQ(list->armedKill(), QString());
}

TEST_F(RowActions, hoveringAnotherRowLeavesTheArmedOneArmed) {
    startTwo();
    list->setHovered(id(3000));
    list->stopInTwoSteps(id(3000));
    list->setHovered(id(4000));
    EXPECT_EQ(list->armedKill(), id(3000));
}

TEST_F(RowActions, leavingARowLateDoesNotUnhoverTheNext) {
    startTwo();
    list->setHovered(id(3000));
    list->setHovered(id(4000));
    list->clearHovered(id(3000));
    EXPECT_EQ(list->hovered(), id(4000));
    list->clearHovered(id(4000));
    EXPECT_EQ(list->hovered(), QString());
}

TEST_F(RowActions, aRowThatHasGoneDoesNothing) {
    startTwo();
    const QString gone = QStringLiteral("7:7");
    list->stopInTwoSteps(gone);
    list->copyAddress(gone);
    list->openInBrowser(gone);
    list->focusHostApp(gone);
    list->requestMenu(gone, {});
    quiesce();
    EXPECT_EQ(list->armedKill(), QString());
    EXPECT_EQ(list->copied(), QString());
    EXPECT_THAT(world.clipboard.texts, IsEmpty());
    EXPECT_THAT(world.desktop.opened, IsEmpty());
}

TEST_F(RowActions, aCopyIsConfirmedForAWhile) {
    startTwo();
    list->copyAddress(id(3000));
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000"));
    EXPECT_EQ(list->copied(), id(3000));
    pass(1100ms);
    EXPECT_EQ(list->copied(), id(3000));
    pass(200ms);
    EXPECT_EQ(list->copied(), QString());
}

TEST_F(RowActions, theConfirmationOfOneCopyDoesNotEndThatOfAnother) {
    startTwo();
    list->copyAddress(id(3000));
    pass(1s);
    list->copyAddress(id(4000));
    pass(400ms);
    EXPECT_EQ(list->copied(), id(4000));
    pass(1s);
    EXPECT_EQ(list->copied(), QString());
}

TEST_F(RowActions, stopVisibleTakesTwoClicks) {
    addPostgres();
    startTwo();
    EXPECT_EQ(list->stoppableCount(), 3);
    list->setQuery(QStringLiteral("node"));
    EXPECT_EQ(list->stoppableCount(), 2);
    list->stopVisibleInTwoSteps();
    EXPECT_TRUE(list->armedStopAll());
    EXPECT_THAT(stopped(), IsEmpty());
    pass(3900ms);
    list->stopVisibleInTwoSteps();
    EXPECT_FALSE(list->armedStopAll());
    pass(2s);
    EXPECT_THAT(stopped(), UnorderedElementsAre(42, 43)) << "those that are shown";
}

TEST_F(RowActions, stopVisibleIsDisarmedAfterFourSeconds) {
    startTwo();
    list->stopVisibleInTwoSteps();
    pass(4100ms);
    EXPECT_FALSE(list->armedStopAll());
    list->stopVisibleInTwoSteps();
    EXPECT_TRUE(list->armedStopAll());
    EXPECT_THAT(stopped(), IsEmpty());
}

TEST_F(RowActions, stopVisibleCannotBeArmedWithNothingToStop) {
    startList();
    open();
    list->stopVisibleInTwoSteps();
    EXPECT_FALSE(list->armedStopAll());
}

TEST_F(RowActions, closingDisarmsAndKeepsTheRest) {
    startTwo();
    list->setQuery(QStringLiteral("node"));
    list->setFilter(static_cast<int>(PortFilter::web));
    list->select(id(3000));
    list->setShowRecent(true);
    list->setShowAllRecent(true);
    list->setHovered(id(4000));
    list->stopInTwoSteps(id(3000));
    list->stopVisibleInTwoSteps();
    close();
    EXPECT_EQ(list->armedKill(), QString());
    EXPECT_FALSE(list->armedStopAll());
    EXPECT_EQ(list->hovered(), QString());
    open();
    EXPECT_EQ(list->query(), QStringLiteral("node"));
    EXPECT_EQ(list->filter(), static_cast<int>(PortFilter::web));
    EXPECT_EQ(list->selection(), id(3000));
    EXPECT_TRUE(list->showRecent());
    EXPECT_TRUE(list->showAllRecent());
}

TEST_F(RowActions, aStopThatFailsIsTold) {
    startTwo();
    const QSignalSpy told(list.get(), &PortListController::errorChanged);
    world.processes.refusals[42] = EPERM;
    list->stopInTwoSteps(id(3000));
    list->stopInTwoSteps(id(3000));
    pass(1s);
    EXPECT_NE(list->error(), QString());
    EXPECT_EQ(told.count(), 1);
    list->dismissError();
    EXPECT_EQ(list->error(), QString());
}

TEST_F(RowActions, timersThatOutliveTheListDoNothing) {
    startTwo();
    list->stopInTwoSteps(id(3000));
    list->stopVisibleInTwoSteps();
    list->copyAddress(id(3000));
    list->requestMenu(id(3000), {});
    list.reset();
    pass(10s);
    EXPECT_THAT(stopped(), IsEmpty());
}

struct Shown {
    QPointF place;
    std::vector<std::string> titles;
};

std::vector<Shown> menusOf(PortListController &list, const std::function<void()> &ask) {
    std::vector<Shown> menus;
    const auto note = [&menus](const QPointF &place, const std::vector<MenuEntry> &entries) {
        menus.push_back({place, {}});
        for (const MenuEntry &entry : entries)
            menus.back().titles.push_back(entry.title.toStdString());
    };
    const auto connection = QObject::connect(&list, &PortListController::menuReady, note);
    ask();
    QObject::disconnect(connection);
    return menus;
}

TEST_F(RowActions, theMenuComesOnceWithWhatLiesOnTheDisk) {
    world.tools.installed["ngrok"] = "/usr/bin/ngrok";
    startTwo();
    const std::vector<Shown> menus = menusOf(*list, [this] {
        list->requestMenu(id(3000), {7, 9});
        pass(5s);
    });
    ASSERT_EQ(menus.size(), 1u);
    EXPECT_EQ(menus[0].place, QPointF(7, 9));
    EXPECT_EQ(menus[0].titles.front(), "Open in Browser");
    EXPECT_THAT(menus[0].titles, testing::Contains("Share Publicly via ngrok"));
}

/// A disk that answers when the test lets it.
class SlowTools : public FakeTools {
public:
    mutable QSemaphore answers;

    [[nodiscard]] std::optional<std::string> find(const std::string &) const override {
        answers.acquire();
        return "/usr/bin/cloudflared";
    }
};

TEST_F(RowActions, theMenuDoesNotWaitForASlowDisk) {
    addServer(42, 3000);
    start();
    const Platform platform = world.platform();
    SlowTools tools;
    list =
        std::make_unique<PortListController>(*store, Platform{.clock = platform.clock,
                                                              .machine = platform.machine,
                                                              .processes = platform.processes,
                                                              .settings = platform.settings,
                                                              .notifications = platform.notifications,
                                                              .launcher = platform.launcher,
                                                              .tools = tools,
                                                              .desktop = platform.desktop,
                                                              .clipboard = platform.clipboard,
                                                              .loginItem = platform.loginItem,
                                                              .previewCapturer = platform.previewCapturer});
    world.clock.afterStep = settle;
    const std::vector<Shown> menus = menusOf(*list, [&] {
        list->requestMenu(id(3000), {});
        world.clock.advance(150ms);
        world.clock.advance(100ms);
        tools.answers.release();
        quiesce();
    });
    ASSERT_EQ(menus.size(), 1u);
    EXPECT_THAT(menus[0].titles, testing::Contains("Share Publicly (install cloudflared)"));
}

} // namespace
} // namespace tarnvale
