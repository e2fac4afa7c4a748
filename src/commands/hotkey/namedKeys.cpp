#include "commands/hotkey/namedKeys.h"

#include <Qt>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr int onPad(Qt::Key key) {
    return static_cast<int>(Qt::KeypadModifier) | static_cast<int>(key);
}

constexpr NamedKey table[] = {
    {49, "Space", "Space", "space", Qt::Key_Space},
    {48, "⇥", "Tab", "Tab", Qt::Key_Tab},
    {36, "↩", "Enter", "Return", Qt::Key_Return},
    {51, "⌫", "Backspace", "BackSpace", Qt::Key_Backspace},
    {114, "Insert", "Insert", "Insert", Qt::Key_Insert},
    {117, "⌦", "Delete", "Delete", Qt::Key_Delete},
    {115, "↖", "Home", "Home", Qt::Key_Home},
    {119, "↘", "End", "End", Qt::Key_End},
    {116, "⇞", "Page Up", "Prior", Qt::Key_PageUp},
    {121, "⇟", "Page Down", "Next", Qt::Key_PageDown},
    {123, "←", "←", "Left", Qt::Key_Left},
    {124, "→", "→", "Right", Qt::Key_Right},
    {125, "↓", "↓", "Down", Qt::Key_Down},
    {126, "↑", "↑", "Up", Qt::Key_Up},
    {122, "F1", "F1", "F1", Qt::Key_F1},
    {120, "F2", "F2", "F2", Qt::Key_F2},
    {99, "F3", "F3", "F3", Qt::Key_F3},
    {118, "F4", "F4", "F4", Qt::Key_F4},
    {96, "F5", "F5", "F5", Qt::Key_F5},
    {97, "F6", "F6", "F6", Qt::Key_F6},
    {98, "F7", "F7", "F7", Qt::Key_F7},
    {100, "F8", "F8", "F8", Qt::Key_F8},
    {101, "F9", "F9", "F9", Qt::Key_F9},
    {109, "F10", "F10", "F10", Qt::Key_F10},
    {103, "F11", "F11", "F11", Qt::Key_F11},
    {111, "F12", "F12", "F12", Qt::Key_F12},
    {105, "F13", "F13", "F13", Qt::Key_F13},
    {107, "F14", "F14", "F14", Qt::Key_F14},
    {113, "F15", "F15", "F15", Qt::Key_F15},
    {106, "F16", "F16", "F16", Qt::Key_F16},
    {64, "F17", "F17", "F17", Qt::Key_F17},
    {79, "F18", "F18", "F18", Qt::Key_F18},
    {80, "F19", "F19", "F19", Qt::Key_F19},
    {90, "F20", "F20", "F20", Qt::Key_F20},
    {76, "⌤", "Enter", "KP_Enter", onPad(Qt::Key_Enter)},
    {82, "0", "0", "KP_0", onPad(Qt::Key_0)},
    {83, "1", "1", "KP_1", onPad(Qt::Key_1)},
    {84, "2", "2", "KP_2", onPad(Qt::Key_2)},
    {85, "3", "3", "KP_3", onPad(Qt::Key_3)},
    {86, "4", "4", "KP_4", onPad(Qt::Key_4)},
    {87, "5", "5", "KP_5", onPad(Qt::Key_5)},
    {88, "6", "6", "KP_6", onPad(Qt::Key_6)},
    {89, "7", "7", "KP_7", onPad(Qt::Key_7)},
    {91, "8", "8", "KP_8", onPad(Qt::Key_8)},
    {92, "9", "9", "KP_9", onPad(Qt::Key_9)},
    {67, "*", "*", "KP_Multiply", onPad(Qt::Key_Asterisk)},
    {69, "+", "+", "KP_Add", onPad(Qt::Key_Plus)},
    {75, "/", "/", "KP_Divide", onPad(Qt::Key_Slash)},
    {78, "-", "-", "KP_Subtract", onPad(Qt::Key_Minus)},
};

} // namespace

std::span<const NamedKey> namedKeys() {
    return table;
}

const NamedKey *namedKey(std::uint32_t keyCode) {
    const auto *const found = std::find_if(std::begin(table), std::end(table),
                                           [keyCode](const NamedKey &key) { return key.keyCode == keyCode; });
    return found == std::end(table) ? nullptr : found;
}

} // namespace tarnvale
