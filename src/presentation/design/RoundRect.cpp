#include "presentation/design/RoundRect.h"

#include <QCache>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <tuple>
#include <utility>

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

QImage paintedPicture(const QSize &pixels, double scale, const RoundRect::Looks &looks) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintRoundRect(painter, QRectF(QPointF(), QSizeF(pixels) / scale), looks);
    painter.end();
    return image.copy(); // without the painter's own memory, which stays with an image
}

/// Many parts of a page look the same, so they share a picture. Main thread, or the one that draws while the
/// main thread waits.
QImage picture(const QSize &pixels, double scale, const RoundRect::Looks &looks) {
    constexpr int mostBytes = 4 << 20;
    static QCache<std::size_t, std::pair<PictureKey, QImage>> cache(mostBytes);
    const PictureKey key{pixels.width(),
                         pixels.height(),
                         scale,
                         looks.color.rgba(),
                         looks.endColor.isValid() ? looks.endColor.rgba() : looks.color.rgba(),
                         looks.strokeColor.rgba(),
                         looks.strokeWidth,
                         looks.radius};
    const std::size_t hash = std::apply([](const auto &...parts) { return qHashMulti(0, parts...); }, key);
    if (const auto *known = cache.object(hash); known != nullptr && known->first == key)
        return known->second;
    QImage image = paintedPicture(pixels, scale, looks);
    cache.insert(hash, new std::pair(key, image), static_cast<int>(image.sizeInBytes()));
    return image;
}

} // namespace

RoundRect::RoundRect(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &RoundRect::looksChanged, this, &QQuickItem::update);
}

QSGNode *RoundRect::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    const bool isSeen =
        m_color.alpha() > 0 || m_endColor.isValid() || (m_strokeWidth > 0 && m_strokeColor.alpha() > 0);
    if (width() <= 0 || height() <= 0 || !isSeen) {
        delete node;
        return nullptr;
    }
    const Looks looks{.color = m_color,
                      .endColor = m_endColor,
                      .strokeColor = m_strokeColor,
                      .strokeWidth = m_strokeWidth,
                      .radius = m_radius};
    auto *image = static_cast<QSGImageNode *>(node);
    if (image == nullptr) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
    }
    const double scale = window()->effectiveDevicePixelRatio();
    const QSize pixels = (size() * scale).toSize().expandedTo({1, 1});
    image->setTexture(window()->createTextureFromImage(picture(pixels, scale, looks)));
    image->setRect(QRectF(QPointF(), QSizeF(pixels) / scale));
    return image;
}

void RoundRect::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

} // namespace tarnvale
