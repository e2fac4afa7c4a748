#pragma once

#include "commands/hotkey/Shortcut.h"

namespace tarnvale {

/// A key that goes down, as a window tells it, in the terms of X11 and Wayland.
///
/// Of a `QKeyEvent` on either: `keycode` is nativeScanCode(), `keysym` is nativeVirtualKey(), `text` is key()
/// as a character when it is below 0x01000000, and Control, Alt, Shift and Meta are the modifiers.
struct KeyPress {
    std::uint32_t keycode = 0; ///< of xkb: the kernel's code of the position (input-event-codes.h) plus 8
    std::uint32_t keysym = 0;  ///< xkbcommon-keysyms.h; 0 when it isn't known
    std::string text; ///< what the key writes when no modifier but Shift is held; empty: by the keysym
    bool control = false;
    bool option = false; ///< Alt
    bool shift = false;
    bool command = false; ///< Super
};

/// The combination that is held: at least one of Control, Option and Command, and a key that has a position
/// and a label. Nothing otherwise.
[[nodiscard]] std::optional<Shortcut> shortcutFor(const KeyPress &press);

/// Esc, which ends the recording of a combination, whatever modifiers are held. A layout that has moved it
/// elsewhere is followed.
[[nodiscard]] bool isEscape(const KeyPress &press);

} // namespace tarnvale
