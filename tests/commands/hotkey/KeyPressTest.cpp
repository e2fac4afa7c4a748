#include "commands/hotkey/KeyPress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

namespace tarnvale {
namespace {

using testing::Eq;
using testing::Optional;

/// A press of the key at `kernelCode`, which writes `keysym`.
KeyPress press(std::uint32_t kernelCode, std::uint32_t keysym) {
    return {.keycode = kernelCode + 8, .keysym = keysym};
}

KeyPress control(KeyPress press) {
    press.control = true;
    return press;
}

KeyPress option(KeyPress press) {
    press.option = true;
    return press;
}

KeyPress shift(KeyPress press) {
    press.shift = true;
    return press;
}

KeyPress command(KeyPress press) {
    press.command = true;
    return press;
}

const KeyPress p = press(KEY_P, 'p');
const KeyPress k = press(KEY_K, 'k');
const KeyPress space = press(KEY_SPACE, ' ');
const KeyPress escape = press(KEY_ESC, 0xff1b);

TEST(KeyPressTest, aPlainKeyIsNoShortcut) {
    EXPECT_EQ(shortcutFor(p), std::nullopt);
}

TEST(KeyPressTest, shiftAloneIsNotEnough) {
    EXPECT_EQ(shortcutFor(shift(p)), std::nullopt);
    EXPECT_THAT(shortcutFor(control(shift(press(KEY_P, 'P')))), Optional(Eq(Shortcut{35, 0x1200, "⌃⇧P"})));
}

TEST(KeyPressTest, eachOfTheOtherModifiersIsEnough) {
    EXPECT_THAT(shortcutFor(control(p)), Optional(Eq(Shortcut{35, 0x1000, "⌃P"})));
    EXPECT_THAT(shortcutFor(option(p)), Optional(Eq(Shortcut{35, 0x800, "⌥P"})));
    EXPECT_THAT(shortcutFor(command(p)), Optional(Eq(Shortcut{35, 0x100, "⌘P"})));
}

TEST(KeyPressTest, theModifiersHaveOneOrder) {
    EXPECT_THAT(shortcutFor(command(option(control(shift(k))))), Optional(Eq(Shortcut{40, 0x1b00, "⌃⌥⇧⌘K"})));
}

TEST(KeyPressTest, theDefaultCanBeRecorded) {
    EXPECT_EQ(shortcutFor(option(command(p))), Shortcut());
}

TEST(KeyPressTest, someKeysHaveLabelsOfTheirOwn) {
    EXPECT_THAT(shortcutFor(option(command(space))), Optional(Eq(Shortcut{49, 0x900, "⌥⌘Space"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_TAB, 0xff09))), Optional(Eq(Shortcut{48, 0x1000, "⌃⇥"})));
    EXPECT_THAT(shortcutFor(command(press(KEY_ENTER, 0xff0d))), Optional(Eq(Shortcut{36, 0x100, "⌘↩"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_F5, 0xffc2))), Optional(Eq(Shortcut{96, 0x1000, "⌃F5"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_LEFT, 0xff51))), Optional(Eq(Shortcut{123, 0x1000, "⌃←"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_KP7, 0xff95))), Optional(Eq(Shortcut{89, 0x1000, "⌃7"})));
}

TEST(KeyPressTest, aBackwardTabIsATabWithShift) {
    EXPECT_THAT(shortcutFor(control(shift(press(KEY_TAB, 0xfe20)))),
                Optional(Eq(Shortcut{48, 0x1200, "⌃⇧⇥"})));
}

TEST(KeyPressTest, thePositionIsTheKeysAndTheLabelTheLayouts) {
    EXPECT_THAT(shortcutFor(control(press(KEY_Y, 'z'))), Optional(Eq(Shortcut{16, 0x1000, "⌃Z"}))); // German
    EXPECT_THAT(shortcutFor(control(press(KEY_Q, 'a'))), Optional(Eq(Shortcut{12, 0x1000, "⌃A"}))); // French
    EXPECT_THAT(shortcutFor(control(press(KEY_SEMICOLON, 0xf6))), Optional(Eq(Shortcut{41, 0x1000, "⌃Ö"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_GRAVE, 0xfe52))), Optional(Eq(Shortcut{50, 0x1000, "⌃^"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_P, 0x0100'0437))), Optional(Eq(Shortcut{35, 0x1000, "⌃З"})));
    EXPECT_THAT(shortcutFor(control(press(KEY_102ND, '<'))), Optional(Eq(Shortcut{10, 0x1000, "⌃<"})));
}

TEST(KeyPressTest, theTextThatTheWindowKnowsGoesFirst) {
    KeyPress cyrillic = control(press(KEY_P, 0x6da));
    EXPECT_EQ(shortcutFor(cyrillic), std::nullopt);
    cyrillic.text = "p";
    EXPECT_THAT(shortcutFor(cyrillic), Optional(Eq(Shortcut{35, 0x1000, "⌃P"})));
    cyrillic.text = "ß";
    EXPECT_THAT(shortcutFor(cyrillic), Optional(Eq(Shortcut{35, 0x1000, "⌃SS"})));
}

TEST(KeyPressTest, aControlCharacterIsNoText) {
    KeyPress withControl = control(p);
    withControl.text = "\x10";
    EXPECT_THAT(shortcutFor(withControl), Optional(Eq(Shortcut{35, 0x1000, "⌃P"})));
}

TEST(KeyPressTest, whatCantBeNamedOrFoundIsIgnored) {
    const std::pair<KeyPress, const char *> rows[] = {
        {press(KEY_LEFTCTRL, 0xffe3), "a modifier"},
        {press(KEY_CAPSLOCK, 0xffe5), "a lock"},
        {press(KEY_NUMLOCK, 0xff7f), "a lock"},
        {press(KEY_PLAYPAUSE, 0x1008ff14), "a key that a Mac hasn't"},
        {press(KEY_MUTE, 0x1008ff12), "a key without a label"},
        {press(KEY_P, 0), "no keysym"},
        {press(KEY_P, 0xfe03), "a keysym that writes nothing"},
        {press(KEY_P, 0x7f), "Delete as a character"},
        {press(KEY_P, 0x0100'd800), "half a character"},
        {press(KEY_P, 0xffff'ffff), "no keysym at all"},
        {{.keycode = 0, .keysym = 'p'}, "no position"},
        {{.keycode = 0xffff'ffff, .keysym = 'p'}, "no position"},
        {escape, "Esc"},
    };
    for (const auto &[key, reason] : rows)
        EXPECT_EQ(shortcutFor(command(control(key))), std::nullopt) << reason;
}

TEST(KeyPressTest, escapeCancelsWithAnyModifier) {
    EXPECT_TRUE(isEscape(escape));
    EXPECT_TRUE(isEscape(command(escape)));
    EXPECT_TRUE(isEscape(control(option(shift(escape)))));
    EXPECT_FALSE(isEscape(command(p)));
}

TEST(KeyPressTest, escapeIsWhereTheLayoutHasIt) {
    EXPECT_TRUE(isEscape(press(KEY_CAPSLOCK, 0xff1b)));
    EXPECT_FALSE(isEscape(press(KEY_ESC, 0xffe5)));
    EXPECT_TRUE(isEscape(press(KEY_ESC, 0)));
}

} // namespace
} // namespace tarnvale
