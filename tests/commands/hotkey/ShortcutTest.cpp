#include "commands/hotkey/Shortcut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::Eq;

TEST(ShortcutTest, theDefaultIsOptionCommandP) {
    EXPECT_EQ(Shortcut(), (Shortcut{35, 2304, "⌥⌘P"}));
}

TEST(ShortcutTest, theStoredFormHasTheNamesOfTheFields) {
    EXPECT_THAT(encodeShortcut({}), Eq(R"({"carbonModifiers":2304,"display":"⌥⌘P","keyCode":35})"));
}

TEST(ShortcutTest, whatIsWrittenIsReadAgain) {
    for (const Shortcut &shortcut :
         {Shortcut(), Shortcut{49, 0x1b00, "⌃⌥⇧⌘Space"}, Shortcut{44, 0x1000, "⌃/"},
          Shortcut{0xffff'ffff, 0, "\"\\\n"}, Shortcut{0, 0xffff'ffff, ""}}) {
        const auto json = encodeShortcut(shortcut);
        ASSERT_TRUE(json) << shortcut.display;
        EXPECT_EQ(decodeShortcut(*json), shortcut);
    }
}

TEST(ShortcutTest, whatIsNoTextHasNoStoredForm) {
    EXPECT_EQ(encodeShortcut({35, 2304, "\xff"}), std::nullopt);
    EXPECT_EQ(encodeShortcut({35, 2304, "\xe2\x8c"}), std::nullopt);
}

TEST(ShortcutTest, otherFieldsAndOtherFormsOfANumberAreRead) {
    EXPECT_EQ(decodeShortcut(
                  R"( {"keyCode": 40.0, "carbonModifiers": 4.096e3, "display": "\u2303K", "more": []} )"),
              (Shortcut{40, 0x1000, "⌃K"}));
}

TEST(ShortcutTest, whatIsNoShortcutIsNone) {
    const std::pair<std::string, const char *> rows[] = {
        {"", "nothing"},
        {"{", "cut short"},
        {"null", "no object"},
        {"[]", "no object"},
        {R"([{"keyCode":35,"carbonModifiers":2304,"display":"⌥⌘P"}])", "a list"},
        {R"({})", "no field"},
        {R"({"carbonModifiers":2304,"display":"⌥⌘P"})", "no key"},
        {R"({"keyCode":35,"display":"⌥⌘P"})", "no modifiers"},
        {R"({"keyCode":35,"carbonModifiers":2304})", "no label"},
        {R"({"keycode":35,"carbonModifiers":2304,"display":"⌥⌘P"})", "another name"},
        {R"({"keyCode":"35","carbonModifiers":2304,"display":"⌥⌘P"})", "a text for a number"},
        {R"({"keyCode":null,"carbonModifiers":2304,"display":"⌥⌘P"})", "null for a number"},
        {R"({"keyCode":true,"carbonModifiers":2304,"display":"⌥⌘P"})", "true for a number"},
        {R"({"keyCode":35.5,"carbonModifiers":2304,"display":"⌥⌘P"})", "a fraction"},
        {R"({"keyCode":-1,"carbonModifiers":2304,"display":"⌥⌘P"})", "negative"},
        {R"({"keyCode":4294967296,"carbonModifiers":2304,"display":"⌥⌘P"})", "beyond 32 bits"},
        {R"({"keyCode":35,"carbonModifiers":1e300,"display":"⌥⌘P"})", "beyond all integers"},
        {R"({"keyCode":35,"carbonModifiers":2304,"display":80})", "a number for a text"},
        {R"({"keyCode":35,"carbonModifiers":2304,"display":null})", "null for a text"},
        {"{\"keyCode\":35,\"carbonModifiers\":2304,\"display\":\"\xff\"}", "no UTF-8"},
        {R"({"keyCode":35,"carbonModifiers":2304,"display":")" + std::string(10000, 'P') + "\"}",
         "far too long"},
    };
    for (const auto &[json, reason] : rows)
        EXPECT_EQ(decodeShortcut(json), std::nullopt) << reason;
}

TEST(ShortcutTest, cutAtAnyByteItIsNone) {
    const std::string json = encodeShortcut({}).value_or("");
    for (std::size_t length = 0; length < json.size(); ++length)
        EXPECT_EQ(decodeShortcut(std::string_view(json).substr(0, length)), std::nullopt) << length;
}

} // namespace
} // namespace tarnvale
