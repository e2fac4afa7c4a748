#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace tarnvale {

/// One place on the keyboard in the numbers of both worlds.
struct KeyPosition {
    std::uint32_t macKeyCode;
    std::uint32_t keycode; ///< this system's, as in `KeyPress`
};

/// All that can be part of a combination: no key that is itself a modifier or a lock. Each number stands
/// there once.
[[nodiscard]] std::span<const KeyPosition> keyPositions();

[[nodiscard]] std::optional<std::uint32_t> macKeyCodeAt(std::uint32_t keycode);
[[nodiscard]] std::optional<std::uint32_t> keycodeAt(std::uint32_t macKeyCode);

} // namespace tarnvale
