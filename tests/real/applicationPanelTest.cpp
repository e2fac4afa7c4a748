// The ways that lead to the panel and away from it.

#include "platform/linux/XWindow.h"
#include "presentation/tray/TrayIcon.h"
#include "real/applicationTest.h"
#include "support/ManualClock.h"

#include <QDBusMessage>

#include <cstdlib>
#include <filesystem>

namespace tarnvale {
namespace {

class ApplicationPanelTest : public ApplicationTest {
protected:
    [[nodiscard]] bool openPanel() { return togglePanel() && desktop.isPanelOpen(); }

    /// Of the open panel.
    [[nodiscard]] const AccessibleNode &panel() const { return *desktop.tree().shown("frame", "Tarnvale"); }

    /// What a host of status items does when the user clicks at this place of the screen.
    void clickStatusItem(int x, int y) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            tray->registered.front(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Activate"));
        call << x << y;
        host.send(call);
    }

    /// The place of the application's one window while the panel is closed.
    [[nodiscard]] AccessibleNode shownWindow() const {
        const ProgramRun found =
            desktop.run({"/usr/bin/xdotool", "search", "--all", "--onlyvisible", "--pid",
                         std::to_string(application->pid()), "--name", "", "getwindowgeometry", "--shell"});
        const auto number = [&](std::string_view name) {
            const std::size_t at = found.output.find(name);
            return at == std::string::npos ? 0 : std::atoi(found.output.c_str() + at + name.size());
        };
        return {.x = number("\nX="),
                .y = number("\nY="),
                .width = number("\nWIDTH="),
                .height = number("\nHEIGHT=")};
    }

    QDBusConnection host = desktop.bus.connect();
};

TEST_F(ApplicationPanelTest, theCommandOpensAndClosesIt) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    ASSERT_TRUE(togglePanel());
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationPanelTest, itOpensAndClosesUnderACompositor) {
    if (!desktop.startCompositor())
        GTEST_SKIP() << "picom isn't installed";
    ASSERT_TRUE(startApplication()) << state();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(openPanel()) << state();
        desktop.press({"Escape"});
        ASSERT_TRUE(desktop.isPanelClosed()) << state();
    }
}

TEST_F(ApplicationPanelTest, theCommandStartsTheApplicationWithThePanelOpen) {
    application = std::make_unique<RealApplication>(desktop, std::vector<std::string>{"--toggle-panel"});
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
}

TEST_F(ApplicationPanelTest, theHotKeyOpensAndClosesIt) {
    ASSERT_TRUE(startApplication()) << state();
    desktop.press({"alt+super+p"});
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    desktop.press({"alt+super+p"});
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationPanelTest, aClickOnTheStatusItemOpensItBeneath) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(waitFor([this] { return tray->registered.size() == 1; }));
    clickStatusItem(300, 10);
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    EXPECT_NEAR(panel().x + panel().width / 2, 300, 20);
    EXPECT_GE(panel().y, 10);
    EXPECT_LT(panel().y, 60);
    clickStatusItem(300, 10);
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationPanelTest, aClickOnTheIconInATrayOfTheOlderKindOpensIt) {
    if (!std::filesystem::exists("/usr/bin/trayer"))
        GTEST_SKIP() << "trayer isn't installed";
    tray.reset();
    const auto trayer =
        desktop.start({"/usr/bin/trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                       "--heighttype", "pixel", "--height", "24", "--SetDockType", "true"});
    ASSERT_TRUE(startApplication()) << state();
    AccessibleNode icon;
    const auto isDocked = [&] {
        icon = shownWindow();
        return icon.x > 700 && icon.y < 24;
    };
    ASSERT_TRUE(waitFor(isDocked, TrayIcon::patience + std::chrono::seconds(30))) << icon.x << "," << icon.y;
    desktop.click(icon);
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    EXPECT_EQ(panel().x + panel().width, 792);
    EXPECT_GT(panel().y, 20);
}

TEST_F(ApplicationPanelTest, withoutATrayItOpensAtTheTopRight) {
    tray.reset();
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    EXPECT_EQ(panel().x + panel().width, 792);
    EXPECT_EQ(panel().y, 8);
}

TEST_F(ApplicationPanelTest, withoutATrayItOpensByItselfAtLast) {
    tray.reset();
    ASSERT_TRUE(startApplication()) << state();
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) { return tree.isPanelOpen(); },
                              TrayIcon::patience + std::chrono::seconds(30)))
        << state();
}

TEST_F(ApplicationPanelTest, desktopsOpenItByItsAction) {
    if (!std::filesystem::exists("/usr/bin/gapplication"))
        GTEST_SKIP() << "gapplication isn't installed";
    ASSERT_TRUE(startApplication()) << state();
    const std::vector<std::string> action{"/usr/bin/gapplication", "action", "dev.tarnvale.Tarnvale",
                                          "toggle-panel"};
    EXPECT_EQ(desktop.run(action).status, 0);
    ASSERT_TRUE(desktop.isPanelOpen()) << state();
    EXPECT_EQ(desktop.run(action).status, 0);
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationPanelTest, anotherWindowThatTakesTheKeyboardClosesIt) {
    ASSERT_TRUE(startApplication()) << state();
    const XWindow other(desktop.display.name(), impossiblePid);
    ASSERT_TRUE(openPanel()) << state();
    static_cast<void>(desktop.run({"/usr/bin/xdotool", "windowactivate", std::to_string(other.id())}));
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

TEST_F(ApplicationPanelTest, escClearsTheSearchAndThenCloses) {
    const auto searches = [](const char *text) {
        return [text](const AccessibleTree &tree) {
            return (tree.shown("label", "No ports match") != nullptr) == (*text != '\0') &&
                   tree.isPanelOpen();
        };
    };
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(openPanel()) << state();
    desktop.type("nothing like that");
    ASSERT_TRUE(desktop.shows(searches("nothing like that"))) << state();
    desktop.press({"Escape"});
    ASSERT_TRUE(desktop.shows(searches(""))) << state();
    desktop.press({"Escape"});
    EXPECT_TRUE(desktop.isPanelClosed()) << state();
}

} // namespace
} // namespace tarnvale
