// Starts on desktops that lack something.

#include "real/applicationTest.h"
#include "support/ManualClock.h"

#include <filesystem>

namespace tarnvale {
namespace {

using testing::EndsWith;

class ApplicationStartTest : public ApplicationTest {
protected:
    /// Screen readers can't be asked without a session bus.
    [[nodiscard]] bool isShown(const std::string &title) const {
        return desktop.run({"/usr/bin/xdotool", "search", "--onlyvisible", "--name", title}).status == 0;
    }

    /// A start with other variables than the desktop's, to its end.
    [[nodiscard]] ProgramRun startWith(const std::vector<std::string> &variables) const {
        std::vector<std::string> words{"/usr/bin/env", "-C", desktop.folder.path("home")};
        words.insert(words.end(), variables.begin(), variables.end());
        words.emplace_back(TARNVALE_EXECUTABLE);
        return desktop.run(words);
    }
};

TEST_F(ApplicationStartTest, withoutADisplayItSaysSo) {
    const std::string advice = "; 'tarnctl help' lists what works without\n";
    const std::string cannot = "tarnvale: the display can't be used (";
    struct Row {
        std::vector<std::string> variables;
        std::string lastLine;
    };
    const Row rows[]{
        {{"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="},
         "tarnvale: there is no display to show anything on" + advice},
        {{"DISPLAY=:4711", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="}, cannot + "DISPLAY=:4711)" + advice},
        {{"DISPLAY=:4711", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=xcb"},
         cannot + "DISPLAY=:4711, QT_QPA_PLATFORM=xcb)" + advice},
        {{"DISPLAY=non\x1bsense", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="},
         cannot + "DISPLAY=non\uFFFDsense)" + advice},
        {{"DISPLAY=", "WAYLAND_DISPLAY=gone", "QT_QPA_PLATFORM="}, cannot + "WAYLAND_DISPLAY=gone)" + advice},
        {{"DISPLAY=", "QT_QPA_PLATFORM=nonsense"}, cannot + "QT_QPA_PLATFORM=nonsense)" + advice},
    };
    for (const Row &row : rows) {
        const ProgramRun start = startWith(row.variables);
        EXPECT_EQ(start.status, 69) << row.lastLine; // and no signal
        EXPECT_THAT(start.error, EndsWith(row.lastLine));
        EXPECT_EQ(start.output, "") << row.lastLine;
    }
    EXPECT_TRUE(std::filesystem::is_empty(desktop.folder.path("home"))) << "no dump of memory, nothing else";
}

TEST_F(ApplicationStartTest, anUnknownWordIsRefused) {
    const ProgramRun start = startAgain({"--frob"});
    EXPECT_EQ(start.status, 64);
    EXPECT_EQ(start.error, "tarnvale: unknown word '--frob'; 'tarnctl help' lists the commands\n");
}

TEST_F(ApplicationStartTest, withoutASessionBusItWorksAndIsStillTheOnlyOne) {
    const std::vector<std::string> noBus{"DBUS_SESSION_BUS_ADDRESS=unix:path=" + desktop.folder.path("gone")};
    application = std::make_unique<RealApplication>(desktop, std::vector<std::string>(), noBus);
    ASSERT_TRUE(application->says("registered ⌥⌘P")) << state();
    // The panel comes first: a window that is only just coming up would take the keyboard from it.
    desktop.press({"alt+super+p"});
    EXPECT_TRUE(waitFor([this] { return isShown("^Tarnvale$"); })) << state();
    const ProgramRun second = startWith(noBus);
    EXPECT_EQ(second.status, 0) << second.error;
    EXPECT_TRUE(waitFor([this] { return isShown("^Overview"); })) << state();
    EXPECT_EQ(application->end(), 0) << state();
}

} // namespace
} // namespace tarnvale
