#include "commands/hotkey/keyPositions.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <set>

namespace tarnvale {
namespace {

TEST(KeyPositionsTest, theDocumentedKeysAreFound) {
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {0, KEY_A},      {6, KEY_Z},    {16, KEY_Y},     {35, KEY_P},       {36, KEY_ENTER}, {48, KEY_TAB},
        {49, KEY_SPACE}, {53, KEY_ESC}, {122, KEY_F1},   {111, KEY_F12},    {123, KEY_LEFT}, {126, KEY_UP},
        {18, KEY_1},     {29, KEY_0},   {50, KEY_GRAVE}, {117, KEY_DELETE},
    };
    for (const auto &[mac, kernel] : rows) {
        EXPECT_EQ(keycodeAt(mac), kernel + 8) << mac;
        EXPECT_EQ(macKeyCodeAt(kernel + 8), mac) << kernel;
    }
}

TEST(KeyPositionsTest, noNumberStandsForTwoKeys) {
    std::set<std::uint32_t> macs;
    std::set<std::uint32_t> ours;
    for (const KeyPosition &key : keyPositions()) {
        EXPECT_TRUE(macs.insert(key.macKeyCode).second) << key.macKeyCode;
        EXPECT_TRUE(ours.insert(key.keycode).second) << key.keycode;
        EXPECT_LE(key.keycode, 255u) << "an X server couldn't grab it";
        EXPECT_LE(key.macKeyCode, 127u);
    }
    EXPECT_EQ(macs.size(), 109u);
}

TEST(KeyPositionsTest, modifiersLocksAndUnknownKeysAreNone) {
    constexpr std::uint32_t none[] = {KEY_LEFTCTRL, KEY_RIGHTALT, KEY_LEFTMETA,   KEY_LEFTSHIFT,
                                      KEY_CAPSLOCK, KEY_NUMLOCK,  KEY_SCROLLLOCK, KEY_PLAYPAUSE};
    for (const std::uint32_t kernel : none)
        EXPECT_EQ(macKeyCodeAt(kernel + 8), std::nullopt) << kernel;
    for (const std::uint32_t mac : {55u, 56u, 57u, 58u, 59u, 63u, 128u, 0xffff'ffffu})
        EXPECT_EQ(keycodeAt(mac), std::nullopt) << mac;
}

} // namespace
} // namespace tarnvale
