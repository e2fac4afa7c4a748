#include "presentation/design/pictureUrl.h"

#include <QBuffer>
#include <QImage>

namespace tarnvale {

QString pictureUrl(const QImage &picture) {
    QBuffer encoded;
    encoded.open(QIODevice::WriteOnly);
    picture.save(&encoded, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(encoded.data().toBase64());
}

} // namespace tarnvale
