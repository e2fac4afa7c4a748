#include "presentation/design/SymbolProvider.h"

#include "presentation/design/symbols.h"

#include <QIcon>
#include <QUrlQuery>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr int largestSide = 512;
constexpr int usualSide = 24;

int sideOf(const QSize &requested) {
    const int side = std::max(requested.width(), requested.height());
    return side > 0 ? std::min(side, largestSide) : usualSide;
}

SymbolStyle styleOf(const QString &query) {
    const QUrlQuery values(query);
    const QColor color(values.queryItemValue(QStringLiteral("color"), QUrl::FullyDecoded));
    const double stroke = values.queryItemValue(QStringLiteral("stroke")).toDouble();
    return {.color = color.isValid() ? color : QColor(Qt::black), .stroke = stroke > 0 ? stroke : 2};
}

} // namespace

QImage SymbolProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize) {
    const qsizetype mark = id.indexOf(QLatin1Char('?'));
    const int side = sideOf(requestedSize);
    QImage image = renderSymbol(QStringView(id).left(mark < 0 ? id.size() : mark), side,
                                styleOf(mark < 0 ? QString() : id.mid(mark + 1)));
    if (image.isNull()) {
        image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    if (size != nullptr)
        *size = image.size();
    return image;
}

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
