#include "presentation/design/IconProvider.h"

#include <QIcon>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr int largestSide = 512;
constexpr int usualSide = 24;

int sideOf(const QSize &requested) {
    const int side = std::max(requested.width(), requested.height());
    return side > 0 ? std::min(side, largestSide) : usualSide;
}

} // namespace

QPixmap IconProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) {
    const QIcon icon = QIcon::fromTheme(id);
    const int side = sideOf(requestedSize);
    QPixmap pixmap = icon.isNull() ? QPixmap() : icon.pixmap(QSize(side, side), 1);
    if (pixmap.isNull()) {
        pixmap = QPixmap(1, 1);
        pixmap.fill(Qt::transparent);
    }
    if (size != nullptr)
        *size = pixmap.size();
    return pixmap;
}

} // namespace tarnvale
