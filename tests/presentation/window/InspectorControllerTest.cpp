#include "presentation/window/WindowTest.h"

#include "probes/LanAddress.h"
#include "store/ChangeCounter.h"

#include <QPointF>

#include <gmock/gmock.h>

#include <fstream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InspectorControllerTest : public WindowTest {
protected:
    /// A web server with a log of its own, one without, and a database, on the page of all ports.
    void startThree() {
        home.write("shop/storage/logs/laravel.log", "shop's line\n");
        addServer(42, 3000, "node server.js", home.path("shop"));
        addServer(43, 4000, "node api.js", "/home/me/api");
        addPostgres();
        startView();
        look();
        scan();
        view->select(SidebarItem::allPorts);
    }

    /// Selects the row of that port, and lets what lies on the disk be read.
    InspectorController &inspect(std::int64_t port) {
        view->ports()->select(id(port));
        quiesce();
        return inspector();
    }

    [[nodiscard]] InspectorController &inspector() const { return *view->ports()->inspector(); }
    [[nodiscard]] std::string log() const {
        return inspector().log()->lines().join(QLatin1Char('\n')).toStdString();
    }
    [[nodiscard]] std::string sharing() const { return inspector().facts().sharing.toStdString(); }
};

TEST_F(InspectorControllerTest, beginsWithoutARow) {
    startThree();
    EXPECT_FALSE(inspector().isPresent());
    EXPECT_EQ(inspector().rowId(), QString());
    EXPECT_FALSE(inspector().armedKill());
    EXPECT_EQ(inspector().copiedField(), QString());
    EXPECT_EQ(inspector().phoneUrl(), QString());
}

TEST_F(InspectorControllerTest, withoutARowNothingCanBeDone) {
    startThree();
    InspectorController &none = inspector();
    none.openInBrowser();
    none.copyAddress();
    none.restart();
    none.revealFolder();
    none.setWatched(true);
    none.saveHealthPath(QStringLiteral("/up"));
    none.share();
    none.stopSharing();
    none.copyPublicURL();
    none.openLog();
    none.stopInTwoSteps();
    none.stopInTwoSteps();
    quiesce();
    EXPECT_FALSE(none.armedKill());
    EXPECT_THAT(stopped(), IsEmpty());
    EXPECT_THAT(world.clipboard.texts, IsEmpty());
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_THAT(store->watchedPorts(), IsEmpty());
    EXPECT_THAT(store->healthPaths(), IsEmpty());
}

TEST_F(InspectorControllerTest, showsTheSelectedRow) {
    startThree();
    const InspectorController &shown = inspect(3000);
    EXPECT_TRUE(shown.isPresent());
    EXPECT_EQ(shown.rowId(), id(3000));
    EXPECT_EQ(shown.facts().port, 3000);
    EXPECT_THAT(texts(inspector().details(), "label"),
                ElementsAre("Port", "Address", "Bound to", "PID", "Started"));
}

TEST_F(InspectorControllerTest, followsWhatTheStoreLearns) {
    startThree();
    inspect(3000);
    const ChangeCounter changes(&inspector(), &InspectorController::factsChanged);
    answers[3000] = {Health::serverError(500), 20};
    pass(31s);
    EXPECT_EQ(inspector().facts().chip, QStringLiteral("500"));
    EXPECT_EQ(inspector().facts().responseTime, QStringLiteral("20 ms"));
    EXPECT_GT(changes.count(), 0);
    EXPECT_GT(inspector().facts().cpuHistory.size(), 5);
}

// The stop.

TEST_F(InspectorControllerTest, aStopTakesTwoClicksWithinFourSeconds) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.stopInTwoSteps();
    EXPECT_TRUE(shop.armedKill());
    pass(3900ms);
    EXPECT_TRUE(shop.armedKill());
    EXPECT_THAT(stopped(), IsEmpty());
    shop.stopInTwoSteps();
    EXPECT_FALSE(shop.armedKill());
    pass(1s);
    EXPECT_THAT(stopped(), ElementsAre(42));
    EXPECT_FALSE(shop.isPresent());
}

TEST_F(InspectorControllerTest, aLateSecondClickArmsAgain) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.stopInTwoSteps();
    pass(4s);
    EXPECT_FALSE(shop.armedKill());
    shop.stopInTwoSteps();
    quiesce();
    EXPECT_TRUE(shop.armedKill());
    EXPECT_THAT(stopped(), IsEmpty());
}

TEST_F(InspectorControllerTest, anotherRowStartsWithNothingArmed) {
    startThree();
    inspect(3000).stopInTwoSteps();
    inspect(4000);
    EXPECT_FALSE(inspector().armedKill());
    inspector().stopInTwoSteps();
    EXPECT_TRUE(inspector().armedKill());
    pass(1s);
    EXPECT_THAT(stopped(), IsEmpty());
    inspect(3000);
    EXPECT_FALSE(inspector().armedKill());
}

TEST_F(InspectorControllerTest, aTimerThatHasOutlivedItsRowDisarmsNoOther) {
    startThree();
    inspect(3000).stopInTwoSteps();
    pass(2s);
    inspect(4000).stopInTwoSteps();
    pass(2100ms);
    EXPECT_TRUE(inspector().armedKill());
    pass(2s);
    EXPECT_FALSE(inspector().armedKill());
}

TEST_F(InspectorControllerTest, aScanLeavesItArmed) {
    startThree();
    inspect(3000).stopInTwoSteps();
    scan();
    EXPECT_TRUE(inspector().armedKill());
    EXPECT_EQ(view->ports()->armedKill(), QString()) << "the list's stop is another one";
}

// Copying.

TEST_F(InspectorControllerTest, aCopyIsConfirmedForAWhile) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.copyField(QStringLiteral("PID"), QStringLiteral("42"));
    EXPECT_EQ(shop.copiedField(), QStringLiteral("PID"));
    EXPECT_THAT(world.clipboard.texts, ElementsAre("42"));
    pass(1150ms);
    EXPECT_EQ(shop.copiedField(), QStringLiteral("PID"));
    pass(50ms);
    EXPECT_EQ(shop.copiedField(), QString());
}

TEST_F(InspectorControllerTest, aSecondCopyIsConfirmedForItsWholeTime) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.copyField(QStringLiteral("PID"), QStringLiteral("42"));
    pass(1s);
    shop.copyField(QStringLiteral("Port"), QStringLiteral("3000"));
    pass(1100ms);
    EXPECT_EQ(shop.copiedField(), QStringLiteral("Port"));
    pass(100ms);
    EXPECT_EQ(shop.copiedField(), QString());
}

TEST_F(InspectorControllerTest, theConfirmationStaysWithItsRow) {
    startThree();
    inspect(3000).copyAddress();
    EXPECT_EQ(inspector().copiedField(), QStringLiteral("address"));
    inspect(5432);
    EXPECT_EQ(inspector().copiedField(), QString());
    inspector().copyAddress();
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000", "localhost:5432"));
}

// The health check.

struct PathGiven {
    const char *path;
    bool canBeSaved;
};

TEST_F(InspectorControllerTest, onlyAnotherValidPathCanBeSaved) {
    startThree();
    InspectorController &shop = inspect(3000);
    for (const PathGiven &given :
         {PathGiven{"/", false}, PathGiven{"/up", true}, PathGiven{"", false}, PathGiven{"up", false},
          PathGiven{"/a b", false}, PathGiven{"/a\r\nHost: x", false}, PathGiven{"/caf\xc3\xa9", false},
          PathGiven{"/health?deep=1", true}})
        EXPECT_EQ(shop.canSaveHealthPath(QString::fromUtf8(given.path)), given.canBeSaved) << given.path;
    EXPECT_TRUE(shop.canSaveHealthPath(QLatin1Char('/') + QString(199, QLatin1Char('x'))));
    EXPECT_FALSE(shop.canSaveHealthPath(QLatin1Char('/') + QString(200, QLatin1Char('x'))));
}

TEST_F(InspectorControllerTest, aPathIsSavedAndAskedFor) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.saveHealthPath(QStringLiteral("/up"));
    quiesce();
    EXPECT_EQ(store->healthPaths().at("3000"), "/up");
    EXPECT_EQ(std::get<1>(probed.back()), "/up");
    EXPECT_EQ(shop.facts().healthPath, QStringLiteral("/up"));
    EXPECT_FALSE(shop.canSaveHealthPath(QStringLiteral("/up")));
    EXPECT_TRUE(shop.canSaveHealthPath(QStringLiteral("/")));
    shop.saveHealthPath(QStringLiteral("/"));
    EXPECT_THAT(store->healthPaths(), IsEmpty());
    EXPECT_EQ(shop.facts().healthPath, QStringLiteral("/"));
}

TEST_F(InspectorControllerTest, aPathThatIsNoneIsNotSaved) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.saveHealthPath(QStringLiteral("/up"));
    shop.saveHealthPath(QStringLiteral("nowhere"));
    shop.saveHealthPath({});
    EXPECT_EQ(store->healthPaths().at("3000"), "/up") << "no bad path removes the stored one";
}

// Watching.

TEST_F(InspectorControllerTest, theSwitchWatchesThePort) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.setWatched(true);
    EXPECT_THAT(store->watchedPorts(), ElementsAre(3000));
    EXPECT_TRUE(shop.facts().isWatched);
    shop.setWatched(true);
    EXPECT_THAT(store->watchedPorts(), ElementsAre(3000));
    shop.setWatched(false);
    EXPECT_THAT(store->watchedPorts(), IsEmpty());
    EXPECT_FALSE(shop.facts().isWatched);
}

// Sharing.

TEST_F(InspectorControllerTest, withoutAToolNothingCanBeShared) {
    startThree();
    inspect(3000);
    EXPECT_EQ(sharing(), "noTool");
    inspect(5432);
    EXPECT_EQ(sharing(), "notOffered");
}

TEST_F(InspectorControllerTest, aPortIsSharedAndNoMore) {
    world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    startThree();
    InspectorController &shop = inspect(3000);
    EXPECT_EQ(sharing(), "available");
    EXPECT_EQ(shop.facts().shareTool, QStringLiteral("cloudflared"));
    shop.share();
    ASSERT_THAT(world.tools.started, SizeIs(1));
    EXPECT_EQ(sharing(), "starting");
    world.tools.started.back()->write("https://deft-words.trycloudflare.com");
    quiesce();
    EXPECT_EQ(sharing(), "up");
    world.clipboard.texts.clear();
    shop.copyPublicURL();
    EXPECT_THAT(world.clipboard.texts, ElementsAre("https://deft-words.trycloudflare.com"));
    EXPECT_EQ(shop.copiedField(), QStringLiteral("publicUrl"));
    shop.stopSharing();
    quiesce();
    EXPECT_TRUE(world.tools.started.back()->isTerminated);
    EXPECT_EQ(sharing(), "available");
}

TEST_F(InspectorControllerTest, aToolThatIsInstalledIsFoundAMomentLater) {
    startThree();
    inspect(3000);
    EXPECT_EQ(sharing(), "noTool");
    world.tools.installed["ngrok"] = "/usr/bin/ngrok";
    pass(2s);
    EXPECT_EQ(sharing(), "available");
    EXPECT_EQ(inspector().facts().shareTool, QStringLiteral("ngrok"));
}

// Logs.

TEST_F(InspectorControllerTest, theLogOfTheSelectedRowIsFollowed) {
    startThree();
    inspect(3000);
    EXPECT_EQ(inspector().facts().logName, QStringLiteral("laravel.log"));
    EXPECT_TRUE(inspector().log()->isFollowing());
    EXPECT_EQ(log(), "shop's line");
    std::ofstream(home.path("shop/storage/logs/laravel.log"), std::ios::app) << "another\n";
    pass(1s);
    EXPECT_EQ(log(), "shop's line\nanother");
}

TEST_F(InspectorControllerTest, anotherRowClearsTheTextAtOnce) {
    home.write("api/storage/logs/laravel.log", "api's line\n");
    startThree();
    addServer(44, 4100, "node api.js", home.path("api"));
    scan();
    inspect(3000);
    ASSERT_EQ(log(), "shop's line");
    view->ports()->select(id(4100));
    EXPECT_EQ(log(), "") << "before anything was read";
    quiesce();
    EXPECT_EQ(log(), "api's line");
    view->ports()->select(id(4000));
    EXPECT_EQ(log(), "");
    quiesce();
    EXPECT_EQ(log(), "");
    EXPECT_FALSE(inspector().log()->isFollowing());
    EXPECT_EQ(inspector().facts().logName, QString());
}

TEST_F(InspectorControllerTest, ofRowsPassedOverQuicklyOnlyTheLastIsShown) {
    startThree();
    for (const std::int64_t port : {3000, 4000, 3000, 5432, 4000})
        view->ports()->select(id(port));
    quiesce();
    EXPECT_EQ(inspector().facts().title, QStringLiteral("api"));
    EXPECT_EQ(log(), "");
    for (const std::int64_t port : {3000, 4000, 3000})
        view->ports()->select(id(port));
    quiesce();
    EXPECT_EQ(log(), "shop's line");
}

TEST_F(InspectorControllerTest, noLogIsReadWhileNobodySeesIt) {
    startThree();
    inspect(3000);
    view->select(SidebarItem::activity);
    EXPECT_FALSE(inspector().log()->isFollowing());
    view->select(SidebarItem::allPorts);
    quiesce();
    EXPECT_EQ(log(), "shop's line");
    lookAway();
    EXPECT_FALSE(inspector().log()->isFollowing());
    look();
    EXPECT_EQ(log(), "shop's line");
}

TEST_F(InspectorControllerTest, aContainersLogIsThatOfItsEngine) {
    world.tools.installed["docker"] = "/usr/bin/docker";
    world.tools.answers["/usr/bin/docker logs --tail 300 db"] = "ready for connections\n";
    addContainer(60, 3306, "db · mysql:8");
    startThree();
    inspect(3306);
    EXPECT_EQ(inspector().facts().logName, QStringLiteral("docker logs db"));
    EXPECT_EQ(log(), "ready for connections");
    inspector().openLog();
    EXPECT_THAT(world.desktop.logs, IsEmpty()) << "there is no file to open";
}

TEST_F(InspectorControllerTest, aLogFileIsOpened) {
    startThree();
    inspect(3000).openLog();
    EXPECT_THAT(world.desktop.logs, ElementsAre(home.path("shop/storage/logs/laravel.log")));
}

// The phone.

TEST_F(InspectorControllerTest, anExposedWebServerHasTheAddressOfTheNetworkIfThereIsOne) {
    startThree();
    world.machine.add({.pid = 60, .path = "/usr/bin/node", .args = "node wide.js", .cwd = "/home/me/wide"});
    world.machine.listen(60, 6000, true);
    scan();
    scan();
    inspect(6000);
    ASSERT_TRUE(inspector().facts().hasPhone);
    EXPECT_EQ(inspector().phoneUrl().toStdString(), lanURL(6000).value_or(""));
    EXPECT_EQ(inspector().phoneCode().isEmpty(), inspector().phoneUrl().isEmpty());
    inspect(3000);
    EXPECT_EQ(inspector().phoneUrl(), QString()) << "it listens on this computer alone";
    EXPECT_EQ(inspector().phoneCode(), QString());
}

// The rest.

TEST_F(InspectorControllerTest, opensRevealsAndAsksForTheMenu) {
    startThree();
    InspectorController &shop = inspect(3000);
    shop.openInBrowser();
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    shop.revealFolder();
    EXPECT_THAT(world.desktop.revealed, ElementsAre(home.path("shop")));
    QString asked;
    QObject::connect(&shop, &InspectorController::menuRequested,
                     [&](const QString &rowId, const QPointF &) { asked = rowId; });
    shop.requestMenu({});
    EXPECT_EQ(asked, id(3000));
}

TEST_F(InspectorControllerTest, aRestartRunsTheCommandAnew) {
    startThree();
    inspect(4000).restart();
    pass(10s);
    EXPECT_THAT(stopped(), ElementsAre(43));
    ASSERT_THAT(world.launcher.launched, SizeIs(1));
    EXPECT_EQ(world.launcher.launched[0]->order.folder, "/home/me/api");
}

} // namespace
} // namespace tarnvale
