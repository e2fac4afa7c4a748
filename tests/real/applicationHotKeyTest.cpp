// The hot key among other programs that take keys.

#include "commands/hotkey/Shortcut.h"
#include "commands/hotkey/linux/X11HotKeyRegistrar.h"
#include "platform/linux/XWindow.h"
#include "real/applicationTest.h"
#include "support/ManualClock.h"

#include <thread>

namespace tarnvale {
namespace {

using testing::HasSubstr;

class ApplicationHotKeyTest : public ApplicationTest {
protected:
    void SetUp() override {
        ApplicationTest::SetUp();
        if (!IsSkipped())
            other = std::make_unique<X11HotKeyRegistrar>(desktop.display.name());
    }

    /// Another program holds this from now on.
    [[nodiscard]] bool hold(const Shortcut &shortcut) const {
        return other->grab(shortcut, HotKeyOccasion::start).result().has_value();
    }

    /// Opens the panel and clicks on the chip; whether it records then.
    [[nodiscard]] bool startRecording() {
        if (!togglePanel() || !desktop.isPanelOpen())
            return false;
        const AccessibleNode *chip = desktop.tree().shown("push button", "Open with");
        if (chip == nullptr)
            return false;
        desktop.click(*chip);
        return desktop.shows([](const AccessibleTree &tree) {
            return tree.shown("push button", "Press a shortcut") != nullptr;
        });
    }

    /// Recording is over, with this on the chip and these words, or none, in the banner.
    [[nodiscard]] bool hasRecorded(const std::string &caps, const std::string &message = {}) {
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *banner = tree.shown("alert");
            return tree.isPanelOpen() && tree.shown("push button", "Open with " + caps) != nullptr &&
                   (banner == nullptr ? message.empty() : banner->name.find(message) != std::string::npos);
        });
    }

    /// For a quarter of a second after it has closed, a press is taken for the one that closed it.
    static void outlastTheClosing() { std::this_thread::sleep_for(std::chrono::milliseconds(300)); }

    [[nodiscard]] std::string stored() const { return settings().bytes("hotKey").value_or(""); }

    const Shortcut controlOptionJ{
        .keyCode = 38, .carbonModifiers = CarbonModifier::control | CarbonModifier::option, .display = "⌃⌥J"};
    std::unique_ptr<X11HotKeyRegistrar> other;
};

TEST_F(ApplicationHotKeyTest, aStoredOneThatIsHeldGivesWayToTheDefault) {
    ASSERT_TRUE(hold(controlOptionJ));
    const std::string json = *encodeShortcut(controlOptionJ);
    ASSERT_TRUE(settings().setBytes("hotKey", json));
    ASSERT_TRUE(startApplication()) << state();
    EXPECT_THAT(application->output(), HasSubstr("couldn't register ⌃⌥J"));
    desktop.press({"alt+super+p"});
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
    EXPECT_EQ(stored(), json) << "it is tried again at the next start";
}

TEST_F(ApplicationHotKeyTest, withoutOneTheProgramRunsOn) {
    ASSERT_TRUE(hold(Shortcut()));
    application = std::make_unique<RealApplication>(desktop);
    ASSERT_TRUE(application->says("couldn't register ⌥⌘P")) << state();
    ASSERT_TRUE(togglePanel());
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
}

TEST_F(ApplicationHotKeyTest, aRecordedOneOpensThePanel) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(startRecording()) << state();
    desktop.press({"x", "shift+x", "ctrl+alt+j"}); // what holds no modifier that counts is no shortcut
    ASSERT_TRUE(hasRecorded("Ctrl+Alt+J")) << state();
    EXPECT_EQ(stored(), *encodeShortcut(controlOptionJ));
    desktop.press({"Escape"});
    ASSERT_TRUE(desktop.isPanelClosed()) << state();
    desktop.press({"alt+super+p"});
    outlastTheClosing();
    desktop.press({"ctrl+alt+j"});
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
}

TEST_F(ApplicationHotKeyTest, escEndsTheRecordingAlone) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(startRecording()) << state();
    desktop.press({"super+Escape"});
    EXPECT_TRUE(hasRecorded("Alt+Super+P")) << state();
    EXPECT_EQ(stored(), "");
}

TEST_F(ApplicationHotKeyTest, oneThatAnotherProgramHoldsIsRefused) {
    ASSERT_TRUE(hold(controlOptionJ));
    bool isOthers = false;
    other->onPress = [&] { isOthers = true; };
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(startRecording()) << state();
    desktop.press({"ctrl+alt+j"});
    EXPECT_TRUE(hasRecorded("Alt+Super+P", "Ctrl+Alt+J is already used by another app.")) << state();
    EXPECT_FALSE(isOthers) << "while recording, keys are nobody else's";
    EXPECT_EQ(stored(), "");
    desktop.press({"alt+super+p"});
    EXPECT_TRUE(desktop.isPanelClosed()) << "the old one is still in force\n" << state();
    desktop.press({"ctrl+alt+j"});
    EXPECT_TRUE(waitFor([&] { return isOthers; })) << "the keys are the others' again";
}

TEST_F(ApplicationHotKeyTest, anotherWindowEndsTheRecording) {
    const XWindow window(desktop.display.name(), impossiblePid);
    ASSERT_TRUE(hold(controlOptionJ));
    bool isOthers = false;
    other->onPress = [&] { isOthers = true; };
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(startRecording()) << state();
    static_cast<void>(desktop.run({"/usr/bin/xdotool", "windowactivate", std::to_string(window.id())}));
    ASSERT_TRUE(desktop.isPanelClosed()) << state();
    desktop.press({"ctrl+alt+j"});
    EXPECT_TRUE(waitFor([&] { return isOthers; })) << "the keyboard is everybody's again";
    EXPECT_EQ(stored(), "");
}

TEST_F(ApplicationHotKeyTest, theOneInForceCanBeRecordedAgain) {
    ASSERT_TRUE(startApplication()) << state();
    ASSERT_TRUE(startRecording()) << state();
    desktop.press({"alt+super+p"});
    EXPECT_TRUE(hasRecorded("Alt+Super+P")) << state();
    EXPECT_EQ(stored(), *encodeShortcut(Shortcut()));
}

} // namespace
} // namespace tarnvale
