#pragma once

#include <QString>

class QImage;

namespace tarnvale {

/// A picture as an address that an `Image` of QML can show ("data:image/png;base64,...", RFC 2397), for small
/// ones that nobody else needs.
[[nodiscard]] QString pictureUrl(const QImage &picture);

} // namespace tarnvale
