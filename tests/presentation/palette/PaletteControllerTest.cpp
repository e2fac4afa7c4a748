#include "presentation/palette/PaletteController.h"

#include "store/StoreTest.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Palette : public StoreTest {
protected:
    void startShown() {
        start();
        make();
        palette->setShown(true);
    }

    void make() {
        PaletteInputs inputs;
        inputs.rows = [this] {
            ++asked;
            std::vector<RowEntry> rows;
            for (RowSection &section : groupedRows(store->visiblePorts(), [this](const ListeningPort &port) {
                     return store->isWebPort(port);
                 }))
                for (RowEntry &row : section.rows)
                    rows.push_back(std::move(row));
            return rows;
        };
        inputs.navigate = [this](SidebarItem page) { done.push_back("go " + key(page).toStdString()); };
        inputs.showPort = [this](const ListeningPort &port) { done.push_back("show " + port.id()); };
        inputs.close = [this] {
            done.emplace_back("close");
            if (isDroppedAtClose)
                palette.reset();
            else
                palette->setShown(false);
        };
        palette = std::make_unique<PaletteController>(*store, world.platform(), std::move(inputs));
    }

    void addContainer(Pid pid, std::int64_t port, const std::string &name) {
        world.machine.add({.pid = pid, .path = "/usr/bin/docker-proxy", .args = "docker-proxy", .cwd = "/"});
        world.machine.listen(pid, port);
        world.machine.publishedPorts[port] = name;
    }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (int row = 0; row < palette->rowCount(); ++row)
            all.push_back(role(row, "title"));
        return all;
    }
    [[nodiscard]] std::string role(int row, const char *name) const {
        const QAbstractItemModel *const model = palette->rows();
        return model->data(model->index(row, 0), model->roleNames().key(name)).toString().toStdString();
    }
    void type(const char *query) { palette->setQuery(QString::fromUtf8(query)); }
    bool press(Qt::Key key, bool isRepeat = false) { return palette->handleKey(key, 0, isRepeat); }
    [[nodiscard]] std::vector<Pid> stopped() const {
        std::vector<Pid> pids;
        for (const auto &signal : world.processes.sent)
            pids.push_back(signal.pid);
        return pids;
    }

    std::vector<std::string> done;
    int asked = 0; ///< for the rows
    bool isDroppedAtClose = false;
    std::unique_ptr<PaletteController> palette;
};

TEST_F(Palette, itStartsAnewAtEachOpening) {
    addServer(42, 3000);
    startShown();
    type("kill 3000");
    press(Qt::Key_Return);
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-42:3000"));
    palette->setShown(false);
    palette->setShown(true);
    EXPECT_EQ(palette->query(), QString());
    EXPECT_EQ(palette->armed(), QString());
    EXPECT_EQ(palette->highlighted(), 0);
    EXPECT_EQ(palette->rowCount(), 12);
}

TEST_F(Palette, whatIsntDestructiveRunsAtOnceAfterClosing) {
    addServer(42, 3000);
    startShown();
    type("show shop");
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_THAT(done, ElementsAre("close", "show 42:3000"));
}

TEST_F(Palette, killingTakesTwoPresses) {
    addServer(42, 3000);
    startShown();
    type("kill shop");
    press(Qt::Key_Return);
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-42:3000"));
    EXPECT_THAT(done, IsEmpty());
    quiesce();
    EXPECT_THAT(stopped(), IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(done, ElementsAre("close"));
    pass(5s);
    EXPECT_THAT(stopped(), ElementsAre(42)) << "the stop goes on after the palette has closed";
}

TEST_F(Palette, aKeyThatIsHeldIsOnePress) {
    addServer(42, 3000);
    startShown();
    type("kill shop");
    press(Qt::Key_Return);
    for (int times = 0; times < 20; ++times)
        EXPECT_TRUE(press(Qt::Key_Return, true));
    quiesce();
    EXPECT_THAT(done, IsEmpty());
    EXPECT_THAT(stopped(), IsEmpty());
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-42:3000"));
}

TEST_F(Palette, movingAwayAndBackDisarms) {
    addContainer(9, 8080, "web · nginx");
    startShown();
    type("8080");
    EXPECT_EQ(titles().back(), "Stop web");
    while (palette->highlighted() + 1 < palette->rowCount())
        press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_NE(palette->armed(), QString());
    press(Qt::Key_Up);
    EXPECT_EQ(palette->armed(), QString());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_THAT(done, IsEmpty()) << "it needs two again";
    press(Qt::Key_Return);
    EXPECT_THAT(done, ElementsAre("close"));
}

TEST_F(Palette, atTheEdgeAnArrowDisarmsToo) {
    addServer(42, 3000);
    startShown();
    type("kill");
    press(Qt::Key_Return);
    EXPECT_TRUE(press(Qt::Key_Down));
    EXPECT_EQ(palette->highlighted(), 0);
    EXPECT_EQ(palette->armed(), QString());
}

TEST_F(Palette, typingDisarmsAndGoesToTheFirstRow) {
    addServer(42, 3000);
    startShown();
    type("shop");
    while (palette->highlighted() + 1 < palette->rowCount())
        press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_NE(palette->armed(), QString());
    type("shop ");
    EXPECT_EQ(palette->armed(), QString());
    EXPECT_EQ(palette->highlighted(), 0);
}

TEST_F(Palette, aClickOnAnotherRowArmsThatOneInstead) {
    addServer(42, 3000);
    addServer(43, 4000, "node api.js", "/home/me/api");
    startShown();
    type("kill");
    palette->click(QStringLiteral("kill-42:3000"));
    palette->click(QStringLiteral("kill-43:4000"));
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-43:4000"));
    EXPECT_EQ(palette->highlighted(), 1);
    palette->click(QStringLiteral("kill-42:3000"));
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-42:3000")) << "the first was forgotten";
    EXPECT_THAT(done, IsEmpty());
    palette->click(QStringLiteral("kill-42:3000"));
    EXPECT_THAT(done, ElementsAre("close"));
    pass(5s);
    EXPECT_THAT(stopped(), ElementsAre(42));
}

TEST_F(Palette, aClickOnWhatIsNotListedDoesNothing) {
    startShown();
    palette->click(QStringLiteral("kill-1:1"));
    palette->click({});
    EXPECT_THAT(done, IsEmpty());
    EXPECT_EQ(palette->highlighted(), 0);
}

TEST_F(Palette, theArrowsStayWithinTheList) {
    startShown();
    ASSERT_EQ(palette->rowCount(), 7);
    EXPECT_TRUE(press(Qt::Key_Up));
    EXPECT_EQ(palette->highlighted(), 0);
    for (int times = 0; times < 10; ++times)
        EXPECT_TRUE(press(Qt::Key_Down, times > 0));
    EXPECT_EQ(palette->highlighted(), 6);
}

TEST_F(Palette, withoutRowsTheArrowsAreIgnoredAndReturnDoesNothing) {
    startShown();
    type("nothing like it");
    EXPECT_EQ(palette->rowCount(), 0);
    EXPECT_FALSE(press(Qt::Key_Down));
    EXPECT_FALSE(press(Qt::Key_Up));
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_THAT(done, IsEmpty());
    EXPECT_EQ(palette->spoken(), QString());
}

TEST_F(Palette, escClosesAndOtherKeysAreText) {
    startShown();
    EXPECT_FALSE(press(Qt::Key_K));
    EXPECT_FALSE(press(Qt::Key_Backspace));
    EXPECT_FALSE(palette->handleKey(Qt::Key_Down, static_cast<int>(Qt::ControlModifier)));
    EXPECT_TRUE(palette->handleKey(Qt::Key_Enter, static_cast<int>(Qt::KeypadModifier), true));
    EXPECT_TRUE(press(Qt::Key_Tab)) << "the keyboard doesn't leave the field";
    EXPECT_THAT(done, IsEmpty());
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_THAT(done, ElementsAre("close"));
}

TEST_F(Palette, aPortThatGoesLeavesTheListAndTheHighlightMayPointPastIt) {
    addServer(42, 3000);
    startShown();
    type("3000");
    while (palette->highlighted() + 1 < palette->rowCount())
        press(Qt::Key_Down);
    const int last = palette->highlighted();
    world.machine.end(42);
    scan();
    EXPECT_EQ(palette->rowCount(), 0);
    EXPECT_EQ(palette->highlighted(), last);
    press(Qt::Key_Return);
    EXPECT_THAT(done, IsEmpty());
    addServer(60, 3000, "node other.js", "/home/me/other");
    scan();
    EXPECT_GT(palette->rowCount(), 0);
    press(Qt::Key_Up);
    EXPECT_LT(palette->highlighted(), palette->rowCount());
}

TEST_F(Palette, whatIsArmedStaysSoWhileTheListChanges) {
    addServer(42, 3000);
    startShown();
    type("kill");
    press(Qt::Key_Return);
    addServer(30, 2000, "node early.js", "/home/me/early");
    scan();
    ASSERT_EQ(palette->rowCount(), 2);
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-42:3000"));
    EXPECT_EQ(palette->highlighted(), 0);
    press(Qt::Key_Return);
    EXPECT_EQ(palette->armed(), QStringLiteral("kill-30:2000")) << "the highlighted row is another one now";
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(Palette, theListFollowsStacksAndTheFilter) {
    startShown();
    store->saveStack("all", {{.args = "npm run dev", .cwd = "/home/me/shop"}});
    quiesce();
    type("start stack");
    EXPECT_THAT(titles(), ElementsAre("Start all"));
    type("system");
    EXPECT_THAT(titles(), ElementsAre("Show System Processes"));
    store->setShowAll(true);
    quiesce();
    EXPECT_THAT(titles(), ElementsAre("Hide System Processes"));
    press(Qt::Key_Return);
    EXPECT_FALSE(store->showAll());
}

TEST_F(Palette, theStoresActionsAreDone) {
    addServer(42, 3000);
    answers[3000] = {Health::responding(200), {}};
    start();
    store->saveStack("all", {{.args = "npm run dev", .cwd = "/home/me/api"}});
    make();
    const auto run = [this](const char *query) {
        palette->setShown(true);
        type(query);
        ASSERT_EQ(palette->rowCount(), 1) << query;
        press(Qt::Key_Return);
        quiesce();
    };
    run("open shop");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    run("copy url");
    EXPECT_THAT(world.clipboard.texts, ElementsAre("http://localhost:3000"));
    run("start all");
    pass(1s);
    EXPECT_THAT(world.launcher.commands(), ElementsAre("npm run dev"));
    run("go watched");
    EXPECT_EQ(done.back(), "go watched");
    const auto before = world.machine.questions().size();
    run("refresh");
    EXPECT_GT(world.machine.questions().size(), before);
    run("restart shop");
    pass(5s);
    EXPECT_THAT(stopped(), ElementsAre(42));
}

TEST_F(Palette, whileItIsHiddenItFollowsNothing) {
    start();
    make();
    EXPECT_EQ(asked, 0);
    palette->setShown(true);
    EXPECT_EQ(asked, 1);
    palette->setShown(false);
    addServer(42, 3000);
    scan();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(palette->rowCount(), 7) << "a palette that fades away keeps its looks";
    palette->click(QStringLiteral("refresh"));
    press(Qt::Key_Return);
    EXPECT_THAT(done, IsEmpty());
    pass(2s);
    EXPECT_EQ(palette->rowCount(), 0);
}

TEST_F(Palette, openedAgainAtOnceItKeepsItsRows) {
    startShown();
    palette->setShown(false);
    palette->setShown(true);
    pass(2s);
    EXPECT_EQ(palette->rowCount(), 7);
}

TEST_F(Palette, scansThatChangeNothingAreNoWork) {
    addServer(42, 3000);
    startShown();
    const QSignalSpy changes(palette.get(), &PaletteController::rowsChanged);
    for (int times = 0; times < 3; ++times)
        scan();
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(Palette, closingMayEndIt) {
    addServer(42, 3000);
    startShown();
    isDroppedAtClose = true;
    type("show shop");
    press(Qt::Key_Return);
    EXPECT_THAT(done, ElementsAre("close", "show 42:3000"));
    EXPECT_EQ(palette, nullptr);
}

TEST_F(Palette, aScreenReaderHearsTheHighlightedRow) {
    addServer(42, 3000);
    startShown();
    const QSignalSpy changes(palette.get(), &PaletteController::spokenChanged);
    type("kill");
    EXPECT_EQ(palette->spoken(), QStringLiteral("Kill shop, Port 3000"));
    press(Qt::Key_Return);
    EXPECT_EQ(palette->spoken(), QStringLiteral("Kill shop, Press ↩ again to kill shop"));
    EXPECT_GE(changes.count(), 2);
}

} // namespace
} // namespace tarnvale
