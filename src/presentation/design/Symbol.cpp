#include "presentation/design/Symbol.h"

#include "presentation/design/PictureCache.h"
#include "presentation/design/symbols.h"

#include <cmath>
#include <utility>

namespace tarnvale {

Symbol::Symbol(QQuickItem *parent) : PictureItem(parent) {
    fitBox();
}

void Symbol::fitBox() {
    const int box = symbolBox(m_name, m_fontSize);
    setImplicitSize(box, box);
    update();
}

void Symbol::setName(const QString &name) {
    if (std::exchange(m_name, name) == name)
        return;
    fitBox();
    Q_EMIT nameChanged();
}

void Symbol::setColor(const QColor &color) {
    if (std::exchange(m_color, color) == color)
        return;
    update();
    Q_EMIT colorChanged();
}

void Symbol::setFontSize(double size) {
    if (std::exchange(m_fontSize, size) == size)
        return;
    fitBox();
    Q_EMIT sizeChanged();
}

void Symbol::setTurns(bool turns) {
    if (std::exchange(m_turns, turns) == turns)
        return;
    update();
    Q_EMIT turnsChanged();
}

QImage Symbol::picture(double scale) const {
    using Key = std::tuple<QString, int, double, QRgb>;
    constexpr int mostBytes = 2 << 20;
    static PictureCache<Key> cache(mostBytes);
    const auto side = static_cast<int>(std::lround(symbolBox(m_name, m_fontSize) * scale));
    const double stroke = symbolStroke(m_fontSize);
    return cache.picture({m_name, side, stroke, m_color.rgba()},
                         [&] { return renderSymbol(m_name, side, {.color = m_color, .stroke = stroke}); });
}

QPointF Symbol::placeOf(const QSizeF &size) const {
    return {middleIn(width(), size.width()), middleIn(height(), size.height())};
}

QSGTexture::Filtering Symbol::filtering() const {
    return m_turns ? QSGTexture::Linear : QSGTexture::Nearest;
}

} // namespace tarnvale
