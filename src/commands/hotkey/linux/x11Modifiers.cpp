#include "commands/hotkey/linux/x11Modifiers.h"

#include "commands/hotkey/Shortcut.h"

#include <algorithm>
#include <xcb/xproto.h>

namespace tarnvale {

namespace {

/// keysymdef.h
constexpr std::uint32_t numLock = 0xff7f;
constexpr std::uint32_t altLeft = 0xffe9;
constexpr std::uint32_t altRight = 0xffea;
constexpr std::uint32_t superLeft = 0xffeb;
constexpr std::uint32_t superRight = 0xffec;

std::span<const std::uint32_t> keysymsOf(std::uint8_t keycode, const X11Keyboard &keyboard) {
    const std::size_t count = keyboard.keysymsPerKeycode;
    const std::span<const std::uint32_t> all(keyboard.keysyms);
    if (keycode < keyboard.firstKeycode)
        return {};
    const std::size_t first = (keycode - keyboard.firstKeycode) * count;
    return first + count <= all.size() ? all.subspan(first, count) : std::span<const std::uint32_t>();
}

/// The modifiers whose keys write one of `wanted`. Shift, Lock and Control are none of those.
std::uint16_t modifiersWith(std::initializer_list<std::uint32_t> wanted, const X11Keyboard &keyboard) {
    constexpr std::size_t modifiers = 8;
    constexpr std::size_t firstOfMeaning = 3; // Mod1
    const std::size_t perModifier = keyboard.modifierKeycodes.size() / modifiers;
    std::uint16_t mask = 0;
    for (std::size_t i = firstOfMeaning * perModifier; i < modifiers * perModifier; ++i) {
        const auto keysyms = keysymsOf(keyboard.modifierKeycodes[i], keyboard);
        if (std::find_first_of(keysyms.begin(), keysyms.end(), wanted.begin(), wanted.end()) != keysyms.end())
            mask = static_cast<std::uint16_t>(mask | 1u << (i / perModifier));
    }
    return mask;
}

/// Two modifiers are never both needed for one key.
std::uint16_t lowest(std::uint16_t mask) {
    return static_cast<std::uint16_t>(mask & -mask);
}

} // namespace

X11Modifiers x11Modifiers(const X11Keyboard &keyboard) {
    const std::uint16_t alt = lowest(modifiersWith({altLeft, altRight}, keyboard));
    const std::uint16_t super = lowest(modifiersWith({superLeft, superRight}, keyboard));
    return {.alt = alt != 0 ? alt : std::uint16_t{XCB_MOD_MASK_1},
            .super = super != 0 ? super : std::uint16_t{XCB_MOD_MASK_4},
            .numLock = modifiersWith({numLock}, keyboard)};
}

std::uint16_t x11Mask(std::uint32_t carbonModifiers, const X11Modifiers &modifiers) {
    std::uint32_t mask = 0;
    if ((carbonModifiers & CarbonModifier::control) != 0)
        mask |= XCB_MOD_MASK_CONTROL;
    if ((carbonModifiers & CarbonModifier::option) != 0)
        mask |= modifiers.alt;
    if ((carbonModifiers & CarbonModifier::shift) != 0)
        mask |= XCB_MOD_MASK_SHIFT;
    if ((carbonModifiers & CarbonModifier::command) != 0)
        mask |= modifiers.super;
    return static_cast<std::uint16_t>(mask);
}

std::vector<std::uint16_t> withLocks(std::uint16_t mask, const X11Modifiers &modifiers) {
    std::vector<std::uint16_t> masks{mask};
    for (const std::uint32_t lock : {std::uint32_t{XCB_MOD_MASK_LOCK}, std::uint32_t{modifiers.numLock}}) {
        if (lock == 0 || (mask & lock) != 0)
            continue;
        for (std::size_t i = masks.size(); i-- > 0;)
            masks.push_back(static_cast<std::uint16_t>(masks[i] | lock));
    }
    return masks;
}

} // namespace tarnvale
