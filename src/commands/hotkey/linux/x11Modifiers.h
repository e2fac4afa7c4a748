#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tarnvale {

/// The keys of each of the eight modifiers, and what the keys write (X11 protocol: GetModifierMapping,
/// GetKeyboardMapping).
struct X11Keyboard {
    std::vector<std::uint8_t> modifierKeycodes; ///< as many for each modifier; 0 stands for none
    std::uint8_t firstKeycode = 8;
    std::vector<std::uint32_t> keysyms; ///< as many for each keycode, from `firstKeycode` on
    std::uint8_t keysymsPerKeycode = 0;
};

/// The bits of the modifiers whose meaning differs from keyboard to keyboard (`XCB_MOD_MASK_...`).
struct X11Modifiers {
    std::uint16_t alt = 0;
    std::uint16_t super = 0;
    std::uint16_t numLock = 0; ///< 0 when there is no such key

    bool operator==(const X11Modifiers &) const = default;
};

/// Alt is Mod1 and Super is Mod4, as nearly everywhere, when no key tells.
[[nodiscard]] X11Modifiers x11Modifiers(const X11Keyboard &keyboard);

/// The mask of a grab for the Mac's `carbonModifiers`.
[[nodiscard]] std::uint16_t x11Mask(std::uint32_t carbonModifiers, const X11Modifiers &modifiers);

/// `mask` with each mix of the locks that the user may have on.
[[nodiscard]] std::vector<std::uint16_t> withLocks(std::uint16_t mask, const X11Modifiers &modifiers);

} // namespace tarnvale
