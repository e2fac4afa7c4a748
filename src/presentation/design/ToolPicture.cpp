#include "presentation/design/ToolPicture.h"

#include "presentation/design/PictureCache.h"
#include "presentation/design/RoundRect.h"
#include "presentation/design/legible.h"
#include "presentation/design/symbols.h"

#include <QPainter>

#include <cmath>

namespace tarnvale {

namespace {

QColor wash(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

} // namespace

ToolPicture::ToolPicture(QQuickItem *parent) : PictureItem(parent) {
    connect(this, &ToolPicture::looksChanged, this, &QQuickItem::update);
}

QImage ToolPicture::picture(double scale) const {
    using Key = std::tuple<int, double, QString, QString, QRgb, QRgb, bool>;
    constexpr int mostBytes = 2 << 20;
    static PictureCache<Key> cache(mostBytes);
    const auto side = static_cast<int>(std::lround(width() * scale));
    return cache.picture({side, scale, m_symbol, m_logo, m_tint.rgba(), m_surface.rgba(), m_dark},
                         [&] { return paintedPicture(side, scale); });
}

QImage ToolPicture::paintedPicture(int side, double scale) const {
    // Makers choose their colours for grounds of their own.
    const QColor mark = legible(m_tint, m_surface, m_dark ? 4.2 : 3.2);
    const double size = width();
    QImage tile = RoundRect::painted({side, side}, scale,
                                     {.color = wash(mark, m_dark ? 0.24 : 0.13),
                                      .endColor = wash(mark, m_dark ? 0.17 : 0.2),
                                      .strokeColor = {},
                                      .strokeWidth = 0,
                                      .radius = size * 0.27});
    const QString &name = m_logo.isEmpty() ? m_symbol : m_logo;
    const auto fontSize = static_cast<double>(std::lround(size * (m_logo.isEmpty() ? 0.43 : 0.5)));
    const auto pixels = static_cast<int>(std::lround(symbolBox(name, fontSize) * scale));
    QImage drawing = renderSymbol(name, pixels, {.color = mark, .stroke = symbolStroke(fontSize)});
    if (drawing.isNull())
        return tile;
    drawing.setDevicePixelRatio(scale);
    const double place = middleIn(size, pixels / scale);
    QPainter(&tile).drawImage(QPointF(place, place), drawing);
    return tile;
}

} // namespace tarnvale
