// The command palette from one end to the other, without a pointer.

#include "real/ApplicationWindow.h"
#include "real/RealProcess.h"
#include "real/servers.h"

namespace tarnvale {
namespace {

class ApplicationPaletteTest : public ApplicationWindow {
protected:
    /// Opens the palette and types; whether a row that begins with `title` is the highlighted one then.
    [[nodiscard]] bool find(const std::string &words, const std::string &title) {
        desktop.press({"ctrl+k"});
        if (!sees("dialog", "Command Palette"))
            return false;
        desktop.type(words);
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *const row = tree.shown("list item", title);
            return row != nullptr && row->name.starts_with(title) && row->is("selected") &&
                   isPaletteOpen(tree);
        });
    }

    [[nodiscard]] static bool isPaletteOpen(const AccessibleTree &tree) {
        return tree.shown("dialog", "Command Palette") != nullptr;
    }

    TemporaryFolder folder;
    ReservedPort port;
};

TEST_F(ApplicationPaletteTest, aPortIsFoundShownAndStoppedByKeysAlone) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    RealProcess server({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
                       {.folder = folder.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(startWithWindow()) << state();

    ASSERT_TRUE(find("go activity", "Go to Activity")) << state();
    desktop.press({"Return"});
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.isWindowOpen("Activity") && !isPaletteOpen(tree);
    })) << state();

    ASSERT_TRUE(find("show " + port.text(), "Show ")) << state();
    desktop.press({"Return"});
    ASSERT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        const AccessibleNode *const row = tree.row(port.number());
        return tree.isWindowOpen("All Ports") && row != nullptr && row->is("selected") &&
               !isPaletteOpen(tree);
    })) << state();

    ASSERT_TRUE(find("kill " + port.text(), "Kill ")) << state();
    desktop.press({"Return"});
    ASSERT_TRUE(sees("list item", "again")) << "it asks first\n" << state();
    EXPECT_GT(listenerCount(port.number()), 0U) << "one press stops nothing";
    desktop.press({"Return"});
    EXPECT_TRUE(server.waitForEnd()) << state();
    EXPECT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        return tree.isWindowOpen("All Ports") && tree.row(port.number()) == nullptr && !isPaletteOpen(tree);
    })) << state();
}

TEST_F(ApplicationPaletteTest, escClosesItAndArrowsChoose) {
    ASSERT_TRUE(startWithWindow()) << state();
    ASSERT_TRUE(find("go to", "Go to Overview")) << state();
    desktop.press({"Down", "Down", "Up"});
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        const AccessibleNode *const row = tree.shown("list item", "Go to All Ports");
        return row != nullptr && row->is("selected");
    })) << state();
    desktop.press({"Escape"});
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.isWindowOpen("Overview") && !isPaletteOpen(tree);
    })) << state();
    desktop.press({"ctrl+k"});
    desktop.type("no such thing");
    EXPECT_TRUE(sees("label", "No matching commands")) << state();
}

} // namespace
} // namespace tarnvale
