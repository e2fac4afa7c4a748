#include "presentation/design/Symbol.h"

#include "presentation/design/PictureCache.h"
#include "presentation/design/symbols.h"

#include <cmath>
#include <utility>

namespace tarnvale {

namespace {

/// Thin lines vanish in small symbols, and look coarse in large ones.
double strokeOf(double fontSize) {
    if (fontSize < 12)
        return 2.25;
    return fontSize < 22 ? 2 : 1.5;
}

double middleIn(double room, double side) {
    return std::ceil(room / 2) - std::ceil(side / 2); // as anchors do, so that it meets the pixels
}

} // namespace

Symbol::Symbol(QQuickItem *parent) : PictureItem(parent) {
    fitBox();
}

int Symbol::box() const {
    const bool isLogo = m_name.startsWith(QStringLiteral("logo-"));
    return static_cast<int>(std::lround(isLogo ? m_fontSize : m_fontSize * 1.2));
}

void Symbol::fitBox() {
    setImplicitSize(box(), box());
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
    const auto side = static_cast<int>(std::lround(box() * scale));
    const double stroke = strokeOf(m_fontSize);
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
