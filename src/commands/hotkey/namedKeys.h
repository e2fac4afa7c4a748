#pragma once

#include <cstdint>
#include <span>

namespace tarnvale {

/// A key that writes no visible character of its own, or one that no layout changes.
struct NamedKey {
    std::uint32_t keyCode; ///< the Mac's
    const char *label;     ///< as `Shortcut::display` holds it
    const char *caption;   ///< the label in words
    const char *keysym;    ///< its name in xkbcommon-keysyms.h, without `XKB_KEY_`
    int qtKey;             ///< Qt::Key, with Qt::KeypadModifier on the number pad
};

[[nodiscard]] std::span<const NamedKey> namedKeys();

/// Null when the key is none of them.
[[nodiscard]] const NamedKey *namedKey(std::uint32_t keyCode);

} // namespace tarnvale
