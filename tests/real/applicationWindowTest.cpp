// The main window: how it comes, goes, and comes back.

#include "real/ApplicationWindow.h"
#include "support/ManualClock.h"

#include <csignal>

namespace tarnvale {
namespace {

class ApplicationWindowTest : public ApplicationWindow {
protected:
    /// What the window manager does when the user drags the window and its corner.
    void moveWindow(const std::string &title, int x, int y, int width, int height) const {
        static_cast<void>(desktop.run({"/usr/bin/xdotool", "search", "--onlyvisible", "--name", "^" + title,
                                       "windowsize", "--sync", std::to_string(width), std::to_string(height),
                                       "windowmove", "--sync", std::to_string(x), std::to_string(y)}));
    }

    /// It is where this frame was.
    [[nodiscard]] bool isAt(const AccessibleNode &place) {
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *const window = tree.window();
            return window != nullptr && window->x == place.x && window->y == place.y &&
                   window->width == place.width && window->height == place.height;
        });
    }
};

TEST_F(ApplicationWindowTest, theFirstStartWelcomesAndNoOtherDoes) {
    ASSERT_TRUE(settings().remove("hasSeenWelcome"));
    ASSERT_TRUE(settings().remove("showWindowAtLaunch"));
    ASSERT_TRUE(startWithWindow()) << state();
    ASSERT_TRUE(sees("dialog", "Welcome to Tarnvale")) << state();
    desktop.press({"Escape"});
    const auto isGone = [](const AccessibleTree &tree) {
        return tree.isWindowOpen("Overview") && tree.shown("dialog") == nullptr;
    };
    EXPECT_TRUE(desktop.shows(isGone)) << state();
    EXPECT_EQ(application->end(), 0) << state();
    EXPECT_EQ(settings().flag("hasSeenWelcome"), true);
    ASSERT_TRUE(startWithWindow()) << state();
    EXPECT_TRUE(desktop.shows(isGone)) << state();
}

TEST_F(ApplicationWindowTest, aClosedOneComesBackAsItWas) {
    ASSERT_TRUE(startWithWindow()) << state();
    ASSERT_TRUE(goTo("Stacks")) << state();
    const AccessibleNode before = frame();
    moveWindow("Stacks", 60, 70, 900, 620);
    ASSERT_TRUE(desktop.shows([&](const AccessibleTree &tree) {
        return tree.window() != nullptr && tree.window()->width == 900 && tree.window()->x != before.x;
    })) << state();
    const AccessibleNode place = frame();
    EXPECT_EQ(place.height, 620);

    desktop.press({"ctrl+w"});
    ASSERT_TRUE(desktop.isWindowClosed()) << state();
    EXPECT_TRUE(application->isRunning()) << state();
    EXPECT_TRUE(waitFor([this] { return tray->registered.size() == 1; })) << "its icon is still there";
    const ProgramRun second = startAgain();
    EXPECT_EQ(second.status, 0) << second.error;
    EXPECT_TRUE(desktop.isWindowOpen("Stacks")) << state();
    EXPECT_TRUE(isAt(place)) << state();

    desktop.press({"ctrl+q"});
    EXPECT_EQ(application->waitForEnd(), 0) << state();
    ASSERT_TRUE(startWithWindow()) << state();
    EXPECT_TRUE(isAt(place)) << frame().x << "," << frame().y << " instead of " << place.x << "," << place.y;
}

TEST_F(ApplicationWindowTest, aSecondStartOpensItAndEnds) {
    ASSERT_TRUE(settings().setFlag("showWindowAtLaunch", false));
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(desktop.isWindowClosed()) << state();
    for (int start = 0; start < 2; ++start) { // an open one stays open
        const ProgramRun second = startAgain();
        EXPECT_EQ(second.status, 0) << second.error;
        EXPECT_TRUE(desktop.isWindowOpen("Overview")) << state();
    }
    ASSERT_TRUE(togglePanel());
    EXPECT_TRUE(desktop.isPanelOpen()) << "the panel stands beside it\n" << state();
    EXPECT_EQ(application->end(SIGTERM), 0) << state();
}

TEST_F(ApplicationWindowTest, thePanelLeadsToIt) {
    ASSERT_TRUE(settings().setFlag("showWindowAtLaunch", false));
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(togglePanel());
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    ASSERT_TRUE(choose("push button", "Open Tarnvale Window")) << state();
    EXPECT_TRUE(desktop.isWindowOpen("Overview")) << state();
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationWindowTest, theKeysOfTheWindowWork) {
    ASSERT_TRUE(startWithWindow()) << state();
    desktop.press({"F9"});
    EXPECT_TRUE(sees("push button", "Show sidebar")) << state();
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("list", "Sections") == nullptr;
    })) << state();
    desktop.press({"F9", "ctrl+f"});
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("list", "Sections") != nullptr && tree.focused() != nullptr &&
               tree.focused()->name.starts_with("Search ports");
    })) << state();
    desktop.press({"Escape", "ctrl+k"});
    EXPECT_TRUE(sees("dialog", "Command Palette")) << state();
    desktop.press({"Escape", "ctrl+comma"});
    EXPECT_TRUE(sees("check box", "Website previews")) << state();
    EXPECT_EQ(application->end(SIGTERM), 0) << "with two windows open\n" << state();
}

} // namespace
} // namespace tarnvale
