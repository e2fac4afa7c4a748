#include "probes/qrImage.h"

#include <qrcodegen.hpp>

namespace tarnvale {

namespace {

using qrcodegen::QrCode;
using qrcodegen::QrSegment;

std::optional<QrCode> encoded(std::string_view text) {
    // What the largest code holds at level M. Far longer texts would only be refused later.
    constexpr std::size_t mostBytes = 2331;
    constexpr int anyMask = -1;
    constexpr bool boostsLevel = false;
    if (text.size() > mostBytes)
        return std::nullopt;
    const QrSegment bytes = QrSegment::makeBytes({text.begin(), text.end()});
    return QrCode::encodeSegments({bytes}, QrCode::Ecc::MEDIUM, QrCode::MIN_VERSION, QrCode::MAX_VERSION,
                                  anyMask, boostsLevel);
}

} // namespace

std::optional<QrImage> qrImage(std::string_view text) {
    constexpr int scale = 8;
    constexpr int margin = 4;
    const auto code = encoded(text);
    if (!code)
        return std::nullopt;
    QrImage image{.side = (code->getSize() + 2 * margin) * scale, .pixels = {}};
    image.pixels.reserve(static_cast<std::size_t>(image.side) * static_cast<std::size_t>(image.side));
    for (int y = 0; y < image.side; ++y)
        for (int x = 0; x < image.side; ++x)
            image.pixels.push_back(code->getModule(x / scale - margin, y / scale - margin) ? 0 : 255);
    return image;
}

} // namespace tarnvale
