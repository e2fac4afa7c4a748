#pragma once

#include <QByteArray>
#include <QtEndian>

namespace tarnvale {

/// The first bytes of an image in the format PNG, which is all that is looked at before it is shown.
inline QByteArray previewPicture(std::uint32_t width = 640, std::uint32_t height = 400) {
    QByteArray size(8, '\0');
    qToBigEndian(width, size.data());
    qToBigEndian(height, size.data() + 4);
    return QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + size;
}

} // namespace tarnvale
