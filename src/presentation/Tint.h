#pragma once

#include <cstdint>
#include <variant>

namespace tarnvale {

/// A colour that users know by name. The theme says how each looks, in light and in dark.
enum class StandardColor : std::uint8_t { blue, brown, cyan, gray, orange, red, teal };

/// A fixed sRGB colour, 0xRRGGBB.
enum class Rgb : std::uint32_t {};

/// The colour of a tile: the theme's, or that of a maker's logo.
using Tint = std::variant<StandardColor, Rgb>;

} // namespace tarnvale
