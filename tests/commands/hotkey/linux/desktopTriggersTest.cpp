#include "commands/hotkey/linux/desktopTriggers.h"

#include <gtest/gtest.h>

#include <Qt>

namespace tarnvale {
namespace {

TEST(DesktopTriggersTest, thePortalGetsNamesOfKeysyms) {
    const std::pair<Shortcut, std::string> rows[] = {
        {{}, "ALT+LOGO+p"},
        {{40, 0x1b00, "⌃⌥⇧⌘K"}, "CTRL+ALT+SHIFT+LOGO+k"},
        {{49, 0x900, "⌥⌘Space"}, "ALT+LOGO+space"},
        {{36, 0x100, "⌘↩"}, "LOGO+Return"},
        {{96, 0x1000, "⌃F5"}, "CTRL+F5"},
        {{16, 0x1000, "⌃Z"}, "CTRL+z"}, // a German keyboard
        {{29, 0x1000, "⌃0"}, "CTRL+0"},
        {{82, 0x1000, "⌃0"}, "CTRL+KP_0"},
        {{43, 0x1000, "⌃,"}, "CTRL+U002c"},
        {{41, 0x1000, "⌃Ö"}, "CTRL+U00f6"},
        {{35, 0x1000, "⌃"}, ""},
        {{35, 0x1000, "⌃SS"}, ""},
        {{35, 0x1000, "⌃\n"}, ""},
    };
    for (const auto &[shortcut, trigger] : rows)
        EXPECT_EQ(portalTrigger(shortcut), trigger) << shortcut.display;
}

TEST(DesktopTriggersTest, kdeGetsNumbersOfQt) {
    const std::pair<Shortcut, std::optional<int>> rows[] = {
        {{}, int(Qt::AltModifier) | int(Qt::MetaModifier) | Qt::Key_P},
        {{16, 0x1200, "⌃⇧Z"}, int(Qt::ControlModifier) | int(Qt::ShiftModifier) | Qt::Key_Z},
        {{49, 0x1000, "⌃Space"}, int(Qt::ControlModifier) | Qt::Key_Space},
        {{41, 0x1000, "⌃Ö"}, int(Qt::ControlModifier) | Qt::Key_Odiaeresis},
        {{82, 0x1000, "⌃0"}, int(Qt::ControlModifier) | int(Qt::KeypadModifier) | Qt::Key_0},
        {{35, 0x1000, "⌃"}, std::nullopt},
        {{35, 0x1000, "⌃SS"}, std::nullopt},
    };
    for (const auto &[shortcut, key] : rows)
        EXPECT_EQ(qtKeyCombination(shortcut), key) << shortcut.display;
}

} // namespace
} // namespace tarnvale
