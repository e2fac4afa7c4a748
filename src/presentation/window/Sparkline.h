#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QSizeF>

namespace tarnvale {

/// The line through `values` in a frame of `size`: the first at its left edge, the last at its right one. The
/// scale is the largest value, but at least 5, so that what does next to nothing draws a low line. A single
/// value is a point at the left.
[[nodiscard]] QList<QPointF> sparklinePoints(const QList<double> &values, QSizeF size);

/// A line of values with a fading ground beneath it.
class Sparkline : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<double> values MEMBER m_values NOTIFY looksChanged)
    Q_PROPERTY(QColor tint MEMBER m_tint NOTIFY looksChanged)

public:
    explicit Sparkline(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void looksChanged();

private:
    QList<double> m_values;
    QColor m_tint;
};

} // namespace tarnvale
