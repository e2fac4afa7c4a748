#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A square picture of one byte a pixel, row by row from the top: 0 is black, 255 white.
struct QrImage {
    int side = 0; ///< in pixels
    std::vector<std::uint8_t> pixels;

    bool operator==(const QrImage &) const = default;
};

/// `text` as a QR code (ISO/IEC 18004) of error correction level M, 8 pixels a module, with the white margin
/// of four modules that readers need; nothing when the text is too long for one.
[[nodiscard]] std::optional<QrImage> qrImage(std::string_view text);

} // namespace tarnvale
