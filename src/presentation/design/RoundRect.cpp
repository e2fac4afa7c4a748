#include "presentation/design/RoundRect.h"

#include "presentation/design/PictureCache.h"

#include <QPainter>

#include <algorithm>

namespace tarnvale {

namespace {

QBrush brushOf(const RoundRect::Looks &looks, const QRectF &rect) {
    if (!looks.endColor.isValid())
        return looks.color;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, looks.color);
    gradient.setColorAt(1, looks.endColor);
    return gradient;
}

void paintRoundRect(QPainter &painter, QRectF rect, const RoundRect::Looks &looks) {
    double radius = std::min({looks.radius, rect.width() / 2, rect.height() / 2});
    const bool hasStroke = looks.strokeWidth > 0 && looks.strokeColor.alpha() > 0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(brushOf(looks, rect));
    painter.setPen(hasStroke ? QPen(looks.strokeColor, looks.strokeWidth) : QPen(Qt::NoPen));
    if (hasStroke) {
        const double inset = looks.strokeWidth / 2;
        rect.adjust(inset, inset, -inset, -inset);
        radius = std::max(0.0, radius - inset);
    }
    painter.drawRoundedRect(rect, radius, radius);
}

/// All that a picture depends on.
using PictureKey = std::tuple<int, int, double, QRgb, QRgb, QRgb, double, double>;

} // namespace

QImage RoundRect::painted(const QSize &pixels, double scale, const Looks &looks) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintRoundRect(painter, QRectF(QPointF(), QSizeF(pixels) / scale), looks);
    painter.end();
    return image.copy(); // without the painter's own memory, which stays with an image
}

RoundRect::RoundRect(QQuickItem *parent) : PictureItem(parent) {
    connect(this, &RoundRect::looksChanged, this, &QQuickItem::update);
}

QImage RoundRect::picture(double scale) const {
    constexpr int mostBytes = 4 << 20;
    static PictureCache<PictureKey> cache(mostBytes);
    if (m_color.alpha() == 0 && !m_endColor.isValid() && (m_strokeWidth <= 0 || m_strokeColor.alpha() == 0))
        return {};
    const Looks looks{.color = m_color,
                      .endColor = m_endColor,
                      .strokeColor = m_strokeColor,
                      .strokeWidth = m_strokeWidth,
                      .radius = m_radius};
    const QSize pixels = (size() * scale).toSize().expandedTo({1, 1});
    const PictureKey key{pixels.width(),
                         pixels.height(),
                         scale,
                         looks.color.rgba(),
                         looks.endColor.isValid() ? looks.endColor.rgba() : looks.color.rgba(),
                         looks.strokeColor.rgba(),
                         looks.strokeWidth,
                         looks.radius};
    return cache.picture(key, [&] { return painted(pixels, scale, looks); });
}

} // namespace tarnvale
