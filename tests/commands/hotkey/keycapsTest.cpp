#include "commands/hotkey/keycaps.h"

#include "commands/hotkey/namedKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(KeycapsTest, modifiersAreOneCapEach) {
    EXPECT_THAT(keycaps("⌥⌘P"), ElementsAre("Alt", "Super", "P"));
    EXPECT_THAT(keycaps("⌃⌥⇧⌘K"), ElementsAre("Ctrl", "Alt", "Shift", "Super", "K"));
}

TEST(KeycapsTest, symbolsOfTheMacAreWords) {
    EXPECT_THAT(keycaps("⌘↩"), ElementsAre("Super", "Enter"));
    EXPECT_THAT(keycaps("⌃⇥"), ElementsAre("Ctrl", "Tab"));
    EXPECT_THAT(keycaps("⌃⌫"), ElementsAre("Ctrl", "Backspace"));
    EXPECT_THAT(keycaps("⌥⌘Space"), ElementsAre("Alt", "Super", "Space"));
}

TEST(KeycapsTest, otherTextsStayAsTheyAre) {
    EXPECT_THAT(keycaps(""), IsEmpty());
    EXPECT_THAT(keycaps("⌃"), ElementsAre("Ctrl"));
    EXPECT_THAT(keycaps("⌃+"), ElementsAre("Ctrl", "+"));
    EXPECT_THAT(keycaps("P⌘"), ElementsAre("P⌘"));
    EXPECT_THAT(keycaps("\xe2\x8c"), ElementsAre("\xe2\x8c"));
    EXPECT_THAT(keycaps("F12"), ElementsAre("F12"));
}

TEST(KeycapsTest, theTextJoinsTheCaps) {
    EXPECT_EQ(displayText("⌃⌥P"), "Ctrl+Alt+P");
    EXPECT_EQ(displayText("⌥⌘↩"), "Alt+Super+Enter");
    EXPECT_EQ(displayText(""), "");
}

TEST(KeycapsTest, theLabelIsWhatIsLeft) {
    EXPECT_EQ(keyLabel("⌃⌥⇧⌘Ö"), "Ö");
    EXPECT_EQ(keyLabel("⌘"), "");
}

TEST(KeycapsTest, noKeyIsNamedTwice) {
    std::set<std::uint32_t> codes;
    for (const NamedKey &key : namedKeys())
        EXPECT_TRUE(codes.insert(key.keyCode).second) << key.label;
}

} // namespace
} // namespace tarnvale
