#include "commands/hotkey/linux/X11HotKeyRegistrar.h"

#include "platform/linux/VirtualDisplay.h"
#include "support/ManualClock.h"
#include "support/runProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <xcb/xcb.h>

namespace tarnvale {
namespace {

const Shortcut controlK{40, 0x1000, "⌃K"};
const Shortcut altSuperP;

struct Freed {
    void operator()(void *reply) const { std::free(reply); }
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Freed>;

struct Disconnected {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnected>;

xcb_window_t rootOf(xcb_connection_t *connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

class X11HotKeyRegistrarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_display.isRunning())
            GTEST_SKIP() << "Xvfb or openbox isn't installed";
        if (!std::filesystem::exists("/usr/bin/xdotool"))
            GTEST_SKIP() << "xdotool isn't installed";
        m_registrar = registrar();
        m_registrar->onPress = [this] { ++m_presses; };
    }

    [[nodiscard]] std::unique_ptr<X11HotKeyRegistrar> registrar() const {
        return std::make_unique<X11HotKeyRegistrar>(m_display.name());
    }

    static HotKeyOutcome grab(X11HotKeyRegistrar &registrar, const Shortcut &shortcut) {
        const auto answer = registrar.grab(shortcut, HotKeyOccasion::start);
        return answer.isFinished() ? answer.result() : std::unexpected(HotKeyFailure::abandoned);
    }

    HotKeyOutcome grab(const Shortcut &shortcut) { return grab(*m_registrar, shortcut); }

    void run(const std::string &program, std::vector<std::string> arguments) const {
        std::vector<std::string> all{"/usr/bin/env", "DISPLAY=" + m_display.name(), program};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramRun run = runProgram(all);
        ASSERT_EQ(run.status, 0) << program << ": " << run.error;
    }

    void type(const std::string &keys) const { run("xdotool", {"key", keys}); }

    void setLayout(const std::vector<std::string> &arguments) const { run("setxkbmap", arguments); }

    [[nodiscard]] Connection connect() const {
        return Connection(xcb_connect(m_display.name().c_str(), nullptr));
    }

    /// The modifiers that are on now.
    [[nodiscard]] std::uint16_t modifiers() const {
        const Connection server = connect();
        const Owned<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
            server.get(), xcb_query_pointer(server.get(), rootOf(server.get())), nullptr));
        return reply ? reply->mask : std::uint16_t{0};
    }

    /// Puts the keys of Mod1 on Mod4 and the other way round.
    void swapAltAndSuper() const {
        const Connection server = connect();
        const Owned<xcb_get_modifier_mapping_reply_t> old(
            xcb_get_modifier_mapping_reply(server.get(), xcb_get_modifier_mapping(server.get()), nullptr));
        ASSERT_TRUE(old);
        const std::uint8_t width = old->keycodes_per_modifier;
        xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(old.get());
        std::swap_ranges(keys + width * XCB_MAP_INDEX_1, keys + width * XCB_MAP_INDEX_2,
                         keys + width * XCB_MAP_INDEX_4);
        const Owned<xcb_set_modifier_mapping_reply_t> done(xcb_set_modifier_mapping_reply(
            server.get(), xcb_set_modifier_mapping(server.get(), width, keys), nullptr));
        ASSERT_TRUE(done);
        ASSERT_EQ(done->status, XCB_MAPPING_STATUS_SUCCESS);
    }

    /// Whatever the server has for the registrar by now has been dealt with. A key of a second registrar is
    /// pressed for that, behind all others.
    int presses() {
        X11HotKeyRegistrar last(m_display.name());
        bool isPressed = false;
        last.onPress = [&] { isPressed = true; };
        EXPECT_TRUE(grab(last, {101, 0x1000, "⌃F9"}));
        type("ctrl+F9");
        EXPECT_TRUE(waitFor([&] { return isPressed; }));
        settle();
        return m_presses;
    }

    VirtualDisplay m_display;
    std::unique_ptr<X11HotKeyRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(X11HotKeyRegistrarTest, aPressIsTold) {
    ASSERT_TRUE(grab(controlK));
    type("ctrl+k");
    EXPECT_EQ(presses(), 1);
    type("ctrl+k");
    EXPECT_EQ(presses(), 2);
}

TEST_F(X11HotKeyRegistrarTest, theDefaultWorks) {
    ASSERT_TRUE(grab(altSuperP));
    type("alt+super+p");
    EXPECT_EQ(presses(), 1);
}

TEST_F(X11HotKeyRegistrarTest, otherKeysAndModifiersDontCount) {
    ASSERT_TRUE(grab(controlK));
    for (const char *keys : {"k", "ctrl+j", "ctrl+shift+k", "alt+k", "ctrl+alt+k"})
        type(keys);
    EXPECT_EQ(presses(), 0);
}

TEST_F(X11HotKeyRegistrarTest, locksDontMatter) {
    ASSERT_TRUE(grab(controlK));
    type("Num_Lock");
    EXPECT_EQ(modifiers(), XCB_MOD_MASK_2);
    type("ctrl+k");
    EXPECT_EQ(presses(), 1);
    type("Caps_Lock");
    EXPECT_EQ(modifiers(), XCB_MOD_MASK_2 | XCB_MOD_MASK_LOCK);
    type("ctrl+k");
    EXPECT_EQ(presses(), 2);
    type("Num_Lock");
    type("ctrl+k");
    EXPECT_EQ(presses(), 3);
}

TEST_F(X11HotKeyRegistrarTest, aHeldKeyIsOnePress) {
    ASSERT_TRUE(grab(controlK));
    run("xdotool", {"keydown", "ctrl", "keydown", "k"});
    EXPECT_TRUE(waitFor([&] { return m_registrar->repeats() >= 3; }));
    run("xdotool", {"keyup", "k", "keyup", "ctrl"});
    EXPECT_EQ(presses(), 1);
    type("ctrl+k");
    EXPECT_EQ(presses(), 2);
}

TEST_F(X11HotKeyRegistrarTest, whatAnotherProgramHoldsIsTaken) {
    const auto other = registrar();
    ASSERT_TRUE(grab(*other, controlK));
    const HotKeyOutcome outcome = grab(controlK);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::taken);
    other->release();
    settle();
    EXPECT_TRUE(waitFor([&] { return grab(controlK).has_value(); }));
}

TEST_F(X11HotKeyRegistrarTest, ofWhatIsPartlyHeldNothingIsKept) {
    // Another program that has forgotten the locks.
    const Connection other = connect();
    const auto held = [&](std::uint16_t mask) {
        constexpr xcb_keycode_t k = 45;
        const auto order = xcb_grab_key_checked(other.get(), 0, rootOf(other.get()), mask, k,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return !Owned<xcb_generic_error_t>(xcb_request_check(other.get(), order));
    };
    EXPECT_TRUE(held(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
    const HotKeyOutcome outcome = grab(controlK);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::taken);
    EXPECT_TRUE(waitFor([&] { return held(XCB_MOD_MASK_CONTROL); }));
    EXPECT_TRUE(held(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_2));
}

TEST_F(X11HotKeyRegistrarTest, theNextOrderLetsGoOfTheLast) {
    ASSERT_TRUE(grab(controlK));
    ASSERT_TRUE(grab(altSuperP));
    type("ctrl+k");
    EXPECT_EQ(presses(), 0);
    ASSERT_TRUE(grab(altSuperP));
    type("alt+super+p");
    EXPECT_EQ(presses(), 1);
}

TEST_F(X11HotKeyRegistrarTest, afterAReleaseNothingIsTold) {
    ASSERT_TRUE(grab(controlK));
    m_registrar->release();
    type("ctrl+k");
    EXPECT_EQ(presses(), 0);
}

TEST_F(X11HotKeyRegistrarTest, thePositionStaysWhenTheLayoutChanges) {
    if (!std::filesystem::exists("/usr/bin/setxkbmap"))
        GTEST_SKIP() << "setxkbmap isn't installed";
    ASSERT_TRUE(grab({16, 0x1000, "⌃Y"}));
    type("ctrl+y");
    EXPECT_EQ(presses(), 1);
    setLayout({"de"});
    type("ctrl+z");
    EXPECT_EQ(presses(), 2);
    type("ctrl+y");
    EXPECT_EQ(presses(), 2);
}

TEST_F(X11HotKeyRegistrarTest, modifiersThatMoveAreFollowed) {
    ASSERT_TRUE(grab({40, 0x800, "⌥K"}));
    type("alt+k");
    EXPECT_EQ(presses(), 1);
    swapAltAndSuper();
    settle();
    type("alt+k");
    EXPECT_EQ(presses(), 2);
    type("super+k");
    EXPECT_EQ(presses(), 2);
}

TEST_F(X11HotKeyRegistrarTest, theSecondLayoutOfTwoWorks) {
    if (!std::filesystem::exists("/usr/bin/setxkbmap"))
        GTEST_SKIP() << "setxkbmap isn't installed";
    setLayout({"us,de", "-option", "grp:caps_toggle"});
    ASSERT_TRUE(grab(controlK));
    type("Caps_Lock");
    type("ctrl+k");
    EXPECT_EQ(presses(), 1);
}

TEST_F(X11HotKeyRegistrarTest, aKeyThatNoKeyboardHasIsUnknown) {
    const HotKeyOutcome outcome = grab({0x3f, 0x1000, "⌃fn"});
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::unknownKey);
}

TEST_F(X11HotKeyRegistrarTest, withoutAServerItIsUnavailable) {
    X11HotKeyRegistrar nowhere(":nowhere");
    const HotKeyOutcome outcome = grab(nowhere, controlK);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), HotKeyFailure::unavailable);
    EXPECT_EQ(nowhere.availability().kind, HotKeyAvailability::Kind::none);
    nowhere.release();
}

TEST_F(X11HotKeyRegistrarTest, aServerThatGoesAwayTakesTheCombinationAlong) {
    auto display = std::make_unique<VirtualDisplay>();
    X11HotKeyRegistrar registrar(display->name());
    ASSERT_TRUE(grab(registrar, controlK));
    EXPECT_TRUE(registrar.isConnected());
    display.reset();
    EXPECT_TRUE(waitFor([&] { return !registrar.isConnected(); }));
    EXPECT_FALSE(grab(registrar, controlK));
    registrar.release();
}

} // namespace
} // namespace tarnvale
