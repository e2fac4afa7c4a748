#include "commands/hotkey/linux/x11Modifiers.h"

#include "commands/hotkey/Shortcut.h"
#include "commands/hotkey/linux/PressFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <xcb/xproto.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::uint32_t numLock = 0xff7f;
constexpr std::uint32_t altLeft = 0xffe9;
constexpr std::uint32_t superLeft = 0xffeb;
constexpr std::uint32_t metaLeft = 0xffe7;

/// Keycodes 8 to 12 write nothing and `keysyms`; the modifiers Shift, Lock, Control, Mod1 to Mod5 have the
/// keycodes in `modifiers`.
X11Keyboard keyboard(std::vector<std::uint8_t> modifiers, std::vector<std::uint32_t> keysyms) {
    return {.modifierKeycodes = std::move(modifiers),
            .firstKeycode = 8,
            .keysyms = std::move(keysyms),
            .keysymsPerKeycode = 1};
}

TEST(X11ModifiersTest, theUsualKeyboard) {
    EXPECT_EQ(x11Modifiers(keyboard({0, 0, 0, 9, 10, 0, 11, 0}, {0, altLeft, numLock, superLeft})),
              (X11Modifiers{XCB_MOD_MASK_1, XCB_MOD_MASK_4, XCB_MOD_MASK_2}));
}

TEST(X11ModifiersTest, modifiersMayLieOnOtherBits) {
    EXPECT_EQ(x11Modifiers(keyboard({0, 0, 0, 11, 0, 10, 0, 9}, {0, altLeft, numLock, superLeft})),
              (X11Modifiers{XCB_MOD_MASK_5, XCB_MOD_MASK_1, XCB_MOD_MASK_3}));
}

TEST(X11ModifiersTest, aKeyOnTwoBitsHasTheLowerOne) {
    EXPECT_EQ(x11Modifiers(keyboard({0, 0, 0, 9, 0, 0, 10, 10}, {0, altLeft, superLeft})).super,
              XCB_MOD_MASK_4);
}

TEST(X11ModifiersTest, severalKeysOfAModifierAreLookedAt) {
    EXPECT_EQ(x11Modifiers(
                  keyboard({0, 0, 0, 0, 0, 0, 8, 9, 0, 10, 0, 0, 0, 0, 0, 0}, {metaLeft, altLeft, numLock})),
              (X11Modifiers{XCB_MOD_MASK_1, XCB_MOD_MASK_4, XCB_MOD_MASK_2}));
}

TEST(X11ModifiersTest, withoutKeysTheUsualBitsAreTaken) {
    const X11Modifiers usual{XCB_MOD_MASK_1, XCB_MOD_MASK_4, 0};
    EXPECT_EQ(x11Modifiers({}), usual);
    EXPECT_EQ(x11Modifiers(keyboard({0, 0, 0, 0, 0, 0, 0, 0}, {altLeft})), usual);
    EXPECT_EQ(x11Modifiers(keyboard({0, 0, 0, 200, 7, 0, 0, 0}, {altLeft})), usual);
    EXPECT_EQ(x11Modifiers(keyboard({9, 9, 9, 0, 0, 0, 0, 0}, {0, numLock})), usual);
}

TEST(X11ModifiersTest, theMaskHasTheKeyboardsBits) {
    const X11Modifiers modifiers{XCB_MOD_MASK_5, XCB_MOD_MASK_3, XCB_MOD_MASK_2};
    EXPECT_EQ(x11Mask(0x900, modifiers), XCB_MOD_MASK_5 | XCB_MOD_MASK_3);
    EXPECT_EQ(x11Mask(0x1200, modifiers), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT);
    EXPECT_EQ(x11Mask(0xffff'e4ff, modifiers), 0);
}

TEST(X11ModifiersTest, eachMixOfLocksIsThereOnce) {
    EXPECT_THAT(withLocks(4, {8, 64, 16}), UnorderedElementsAre(4, 4 | 2, 4 | 16, 4 | 2 | 16));
    EXPECT_THAT(withLocks(4, {8, 64, 0}), UnorderedElementsAre(4, 4 | 2));
    EXPECT_THAT(withLocks(4 | 16, {8, 64, 16}), UnorderedElementsAre(4 | 16, 4 | 16 | 2));
}

TEST(PressFilterTest, aHeldKeyIsOnePress) {
    PressFilter filter;
    std::vector<bool> told{filter.isPress(100)};
    for (const std::uint32_t time : {700u, 740u, 780u}) {
        filter.release(time);
        told.push_back(filter.isPress(time));
    }
    filter.release(800);
    told.push_back(filter.isPress(801));
    EXPECT_THAT(told, ElementsAre(true, false, false, false, true));
}

TEST(PressFilterTest, theFirstPressOfAllCountsAtAnyTime) {
    EXPECT_TRUE(PressFilter().isPress(0));
}

} // namespace
} // namespace tarnvale
