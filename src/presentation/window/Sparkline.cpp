#include "presentation/window/Sparkline.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr double lowestScale = 5;
constexpr double lineWidth = 1.5;

} // namespace

QList<QPointF> sparklinePoints(const QList<double> &values, QSizeF size) {
    double scale = lowestScale;
    for (const double value : values)
        scale = std::max(scale, value);
    const double step = values.size() > 1 ? size.width() / static_cast<double>(values.size() - 1) : 0;
    QList<QPointF> points;
    for (qsizetype i = 0; i < values.size(); ++i)
        points.append({step * static_cast<double>(i), size.height() * (1 - values[i] / scale)});
    return points;
}

Sparkline::Sparkline(QQuickItem *parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Sparkline::looksChanged, this, [this] { update(); });
}

void Sparkline::paint(QPainter *painter) {
    const QSizeF inner(width() - lineWidth, height() - lineWidth);
    QList<QPointF> points = sparklinePoints(m_values, inner);
    if (points.isEmpty())
        return;
    painter->translate(lineWidth / 2, lineWidth / 2); // the line has a width
    painter->setRenderHint(QPainter::Antialiasing);
    QPainterPath line(points.first());
    for (const QPointF &point : points)
        line.lineTo(point);
    QPainterPath ground = line;
    ground.lineTo(points.last().x(), inner.height());
    ground.lineTo(points.first().x(), inner.height());
    ground.closeSubpath();
    QLinearGradient fading(0, 0, 0, inner.height());
    QColor shade = m_tint;
    shade.setAlphaF(0.28F);
    fading.setColorAt(0, shade);
    shade.setAlphaF(0.02F);
    fading.setColorAt(1, shade);
    painter->fillPath(ground, fading);
    painter->setPen(QPen(m_tint, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (points.size() == 1) // a path to where one is already leaves nothing
        painter->drawPoint(points.first());
    else
        painter->drawPath(line);
}

} // namespace tarnvale
