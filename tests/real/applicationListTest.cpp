// The list of the panel, driven by keys.

#include "platform/linux/Dunst.h"
#include "real/RealProcess.h"
#include "real/ScreenReader.h"
#include "real/applicationTest.h"
#include "real/servers.h"
#include "support/ManualClock.h"

namespace tarnvale {
namespace {

class ApplicationListTest : public ApplicationTest {
protected:
    void SetUp() override {
        ApplicationTest::SetUp();
        if (IsSkipped())
            return;
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        server = std::make_unique<RealProcess>(
            std::vector<std::string>{found, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
            ProcessSetup{.folder = project.path()});
        ASSERT_TRUE(awaitListeners(port.number()));
    }

    /// Opens the panel and waits for the list.
    [[nodiscard]] bool openPanel() {
        return togglePanel() && desktop.isPanelOpen() &&
               desktop.shows([](const AccessibleTree &tree) { return tree.countShown("list item") > 0; });
    }

    /// Leaves nothing in the list but the server's row, and selects it.
    [[nodiscard]] bool findRow() {
        desktop.type(port.text());
        const auto isAlone = [this](const AccessibleTree &tree) {
            return tree.row(port.number()) != nullptr && tree.countShown("list item") == 1;
        };
        if (!desktop.shows(isAlone))
            return false;
        desktop.press({"Down"});
        return desktop.shows([this](const AccessibleTree &tree) {
            const AccessibleNode *row = tree.row(port.number());
            return row != nullptr && row->is("selected");
        });
    }

    /// Walks down to the server's row, past whatever else runs on this machine.
    [[nodiscard]] bool walkToRow() {
        constexpr int mostRows = 200;
        std::string selected;
        for (int step = 0; step < mostRows; ++step) {
            desktop.press({"Down"});
            const auto hasMoved = [&](const AccessibleTree &tree) { return selectedPorts(tree) != selected; };
            if (!desktop.shows(hasMoved, std::chrono::seconds(5)))
                return false;
            selected = selectedPorts(desktop.tree());
            if (selected.starts_with("port " + port.text()))
                return true;
        }
        return false;
    }

    /// From the name of the selected row, without what changes in time.
    [[nodiscard]] static std::string selectedPorts(const AccessibleTree &tree) {
        for (const AccessibleNode &node : tree.nodes) {
            const std::size_t ports = node.name.find("port ");
            if (node.role == "list item" && node.is("selected") && ports != std::string::npos)
                return node.name.substr(ports, node.name.find(',', ports) - ports);
        }
        return {};
    }

    /// Ends what the application has launched on the port.
    void endLaunched() const {
        for (const ListeningPort &record : scanPort(port.number()))
            killMarked(record.pid, port.text());
    }

    TemporaryFolder project;
    ReservedPort port;
    std::unique_ptr<RealProcess> server;
};

TEST_F(ApplicationListTest, aServerIsStoppedByKeys) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    ASSERT_TRUE(walkToRow()) << state();
    desktop.press({"k"});
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("push button", "Kill process") == nullptr && tree.shown("push button", "Kill");
    })) << state();
    EXPECT_GT(listenerCount(port.number()), 0U) << "one press stops nothing";
    desktop.press({"k"});
    EXPECT_TRUE(server->waitForEnd()) << state();
    EXPECT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        return tree.isPanelOpen() && tree.row(port.number()) == nullptr;
    })) << state();
}

TEST_F(ApplicationListTest, whatIsTypedNarrowsTheList) {
    const auto isAlone = [this](const AccessibleTree &tree) {
        return tree.row(port.number()) != nullptr && tree.countShown("list item") == 1 &&
               tree.shown("label", "1 listening") != nullptr;
    };
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    desktop.type(port.text());
    EXPECT_TRUE(desktop.shows(isAlone)) << state();
    desktop.type("k"); // a letter of the search, not an order
    EXPECT_TRUE(desktop.shows([&](const AccessibleTree &tree) {
        return tree.shown("label", "No ports match “" + port.text() + "k”") != nullptr;
    })) << state();
    desktop.press({"BackSpace"});
    EXPECT_TRUE(desktop.shows(isAlone)) << state();
    EXPECT_GT(listenerCount(port.number()), 0U);
}

TEST_F(ApplicationListTest, aWatchedServerComesBackFromItsNotification) {
    Dunst dunst(desktop.bus, desktop.display);
    if (!dunst.problem().empty())
        GTEST_SKIP() << dunst.problem();
    ASSERT_TRUE(dunst.start());
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    ASSERT_TRUE(findRow()) << state();
    ScreenReader reader(desktop);
    desktop.press({"Menu"});
    ASSERT_TRUE(reader.goTo("Notify When Port Stops", "Down")) << reader.heard() << state();
    desktop.press({"Return"});
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) { return tree.shown("label", "Watched"); }))
        << state();
    server->end();
    ASSERT_TRUE(desktop.shows([this](const AccessibleTree &tree) { return !tree.row(port.number()); }))
        << state();
    ASSERT_TRUE(dunst.isDisplayed("1"));
    dunst.choose("Start Again");
    EXPECT_TRUE(waitFor([this] { return listenerCount(port.number()) > 0; }, std::chrono::seconds(20)));
    EXPECT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        return tree.row(port.number()) != nullptr && tree.shown("label", "Watched") != nullptr;
    })) << state();
    endLaunched();
}

/// What has no name can't be told to a user who doesn't see it.
void expectNames(const AccessibleTree &tree) {
    const std::set<std::string> vague{"unknown", "filler", "invalid", "redundant object"};
    for (const AccessibleNode &node : tree.nodes) {
        if (!node.is("showing"))
            continue;
        EXPECT_FALSE(node.name.empty()) << node.role << " without a name\n" << tree.text();
        EXPECT_FALSE(vague.contains(node.role)) << node.name << " is a " << node.role;
        EXPECT_GT(node.width * node.height, node.role == "application" ? -1 : 0)
            << node.name << " is nowhere";
    }
}

TEST_F(ApplicationListTest, everythingHasANameForScreenReaders) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    expectNames(desktop.tree());
    ASSERT_TRUE(findRow()) << state();
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("push button", "More actions") && tree.shown("push button", "Copy");
    })) << state();
    expectNames(desktop.tree());
    ScreenReader reader(desktop);
    desktop.press({"shift+F10"});
    EXPECT_TRUE(reader.goTo("Copy Port", "Down")) << reader.heard() << state();
    desktop.press({"Escape"});
    EXPECT_TRUE(desktop.isPanelOpen()) << "only the menu closes\n" << state();
}

TEST_F(ApplicationListTest, theTabKeyReachesEveryControlInOrder) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    const auto hasFocus = [this](const std::string &words) {
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *focused = tree.focused();
            return focused != nullptr && focused->name.starts_with(words);
        });
    };
    EXPECT_TRUE(hasFocus("Search ports")) << state();
    desktop.press({"shift+Tab"});
    EXPECT_TRUE(hasFocus("Open with")) << state();
    desktop.press({"shift+Tab"});
    EXPECT_TRUE(hasFocus("Open Tarnvale Window")) << state();
    desktop.press({"shift+Tab"});
    EXPECT_TRUE(hasFocus("Settings")) << state();
    desktop.press({"Tab", "Tab", "Tab"});
    EXPECT_TRUE(hasFocus("Search ports")) << state();
    desktop.press({"Tab"});
    EXPECT_TRUE(hasFocus("All")) << state();
}

} // namespace
} // namespace tarnvale
