// The icon in a real tray on a real X display, clicked by a real pointer.

#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "presentation/tray/FakeWatcher.h"
#include "support/ManualClock.h"
#include "support/runProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace tarnvale {
namespace {

/// What the program wrote last.
struct State {
    std::string kind;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int clicks = 0;
};

class XembedTrayTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char *program : {"/usr/bin/trayer", "/usr/bin/xdotool"})
            if (!std::filesystem::exists(program))
                GTEST_SKIP() << program << " isn't installed";
        if (!m_bus.isRunning() || !m_display.isRunning())
            GTEST_SKIP() << "dbus-daemon, Xvfb or openbox isn't installed";
    }

    [[nodiscard]] std::unique_ptr<TestProcess> start(const std::vector<std::string> &arguments) const {
        return std::make_unique<TestProcess>(
            arguments,
            environmentWith({"DISPLAY=" + m_display.name(), "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address(),
                             "QT_QPA_PLATFORM=xcb", "WAYLAND_DISPLAY=", "QT_SCALE_FACTOR=1"}));
    }

    [[nodiscard]] std::unique_ptr<TestProcess> startTray() const {
        return start({"/usr/bin/trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                      "--heighttype", "pixel", "--height", "24", "--SetDockType", "true"});
    }

    [[nodiscard]] std::unique_ptr<TestProcess> startProgram() const {
        return start({TRAY_PROGRAM, m_folder.path("state")});
    }

    [[nodiscard]] State state() const {
        std::istringstream text(readFile(m_folder.path("state")));
        State state;
        text >> state.kind >> state.x >> state.y >> state.width >> state.height >> state.clicks;
        return state;
    }

    /// The tray moves its icons for a while after they have docked.
    [[nodiscard]] bool isDocked() const {
        return waitFor(
            [this] {
                const State now = state();
                return now.kind == "xembed" && now.width > 0 && now.y < 24 && now.x > 700;
            },
            std::chrono::seconds(30));
    }

    void click(const char *button) const {
        const State now = state();
        static_cast<void>(runProgram({"/usr/bin/env", "DISPLAY=" + m_display.name(), "/usr/bin/xdotool",
                                      "mousemove", std::to_string(now.x + now.width / 2),
                                      std::to_string(now.y + now.height / 2), "click", button}));
    }

    PrivateBus m_bus;
    VirtualDisplay m_display;
    TemporaryFolder m_folder;
};

TEST_F(XembedTrayTest, theIconDocksAndBothButtonsAreClicks) {
    const auto tray = startTray();
    const auto program = startProgram();
    ASSERT_TRUE(isDocked()) << readFile(m_folder.path("state"));
    for (const char *button : {"1", "3"}) {
        const int before = state().clicks;
        click(button);
        EXPECT_TRUE(waitFor([&] { return state().clicks == before + 1; })) << button;
    }
}

TEST_F(XembedTrayTest, aTrayThatComesLateIsFound) {
    const auto program = startProgram();
    ASSERT_TRUE(waitFor([this] { return state().kind == "none"; }));
    const auto tray = startTray();
    EXPECT_TRUE(isDocked()) << readFile(m_folder.path("state"));
}

TEST_F(XembedTrayTest, aHostOfStatusItemsTakesTheIconOver) {
    const auto tray = startTray();
    const auto program = startProgram();
    ASSERT_TRUE(isDocked()) << readFile(m_folder.path("state"));
    auto watcher = std::make_unique<FakeWatcher>(m_bus.connect());
    EXPECT_TRUE(waitFor([this] { return state().kind == "statusNotifier"; }));
    EXPECT_EQ(watcher->registered.size(), 1);
    EXPECT_EQ(state().width, 0);
    watcher.reset();
    EXPECT_TRUE(isDocked()) << "it comes back";
}

} // namespace
} // namespace tarnvale
