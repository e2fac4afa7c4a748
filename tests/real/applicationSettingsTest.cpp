// What the user chooses, from one start to the next.

#include "real/ApplicationWindow.h"
#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/ManualClock.h"

#include <filesystem>

namespace tarnvale {
namespace {

class ApplicationSettingsTest : public ApplicationWindow {
protected:
    /// The settings' window is open with these two switches so.
    [[nodiscard]] bool showsSwitches(bool previews, bool window) {
        return desktop.shows([=](const AccessibleTree &tree) {
            const AccessibleNode *const first = tree.shown("check box", "Website previews");
            const AccessibleNode *const second = tree.shown("check box", "Open the window when");
            return first != nullptr && second != nullptr && first->is("checked") == previews &&
                   second->is("checked") == window;
        });
    }

    TemporaryFolder folder;
    ReservedPort port;
};

TEST_F(ApplicationSettingsTest, whatIsSwitchedStaysSo) {
    ASSERT_TRUE(startWithWindow()) << state();
    desktop.press({"ctrl+comma"});
    ASSERT_TRUE(showsSwitches(true, true)) << state();
    desktop.click(*desktop.tree().shown("check box", "Website previews"));
    desktop.click(*desktop.tree().shown("check box", "Open the window when"));
    ASSERT_TRUE(showsSwitches(false, false)) << state();
    EXPECT_EQ(settings().flag("showWebPreviews"), false);
    EXPECT_EQ(settings().flag("showWindowAtLaunch"), false);
    desktop.press({"ctrl+w"});
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.shown("check box", "Website previews") == nullptr && tree.isWindowOpen("Overview");
    })) << state();
    EXPECT_EQ(application->end(), 0) << state();

    application.reset();
    ASSERT_TRUE(startApplication()) << state();
    EXPECT_TRUE(desktop.isWindowClosed()) << state();
    EXPECT_EQ(startAgain().status, 0);
    ASSERT_TRUE(desktop.isWindowOpen("Overview")) << state();
    desktop.press({"ctrl+comma"});
    EXPECT_TRUE(showsSwitches(false, false)) << state();
}

TEST_F(ApplicationSettingsTest, aFileOfLongAgoIsRead) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    const std::string file = desktop.folder.path("config") + "/tarnvale/tarnvale.conf";
    const std::string unknown = "somethingElse = of a version to come";
    std::filesystem::remove(file);
    desktop.folder.write(
        "config/tarnvale/tarnvale.conf",
        unknown + "\nhasSeenWelcome=true\nwatchedPorts=[" + port.text() + ",4711]\nhealthPaths={\"" +
            port.text() +
            "\":\"/missing\"}\n"
            "stacks=@[{\"id\":\"0B5E5C1E-6E0C-4D57-9F3B-0D6B8C1E2F3A\",\"name\":\"Old shop\","
            "\"commands\":[{\"args\":\"npm run dev\",\"cwd\":\"\\/srv\\/shop\"}]}]\n"
            "events=@[{\"id\":\"7E57D004-2B97-4E7A-B45F-5387367791CD\",\"date\":700000600.5,"
            "\"port\":3000,\"pid\":77,\"name\":\"ancient\",\"started\":false},"
            "{\"id\":\"8E57D004-2B97-4E7A-B45F-5387367791CD\",\"date\":700000000,"
            "\"port\":3000,\"pid\":77,\"name\":\"ancient\",\"started\":true}]\n");
    RealProcess server({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
                       {.folder = folder.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(startWithWindow()) << state();

    ASSERT_TRUE(goTo("Watched")) << state();
    EXPECT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        const AccessibleNode *const row = tree.row(port.number());
        return row != nullptr && row->name.find("HTTP 404") != std::string::npos;
    })) << "it asks for the stored path\n"
        << state();
    ASSERT_TRUE(goTo("Stacks")) << state();
    EXPECT_TRUE(sees("list item", "Old shop, ")) << state();
    EXPECT_TRUE(sees("label", "npm run dev")) << state();
    ASSERT_TRUE(goTo("Activity")) << state();
    EXPECT_TRUE(sees("list item", "10m")) << "of ten minutes\n" << state();
    EXPECT_EQ(application->end(), 0) << state();
    EXPECT_THAT(readFile(file), testing::HasSubstr(unknown)) << "what isn't understood is kept";
}

} // namespace
} // namespace tarnvale
