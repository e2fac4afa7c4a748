// The mark is designed on a canvas of 18 by 18 points whose y runs upwards. Drawn as it stands, most of its
// edges would fall between pixels and blur; so each edge goes to the nearest whole pixel and each bar keeps
// at least one.

#include "presentation/tray/trayGlyph.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tarnvale {

namespace {

constexpr double canvas = 18;
constexpr double dotSize = 7;
constexpr double stroke = 1.4;
constexpr double outlineRadius = 2.8;
constexpr double barRadius = 0.65;
constexpr QRectF outline(1.5, 2.5, 15, 13);
constexpr QRectF titleLine(2, 10.6, 14, 1.2);
constexpr QRectF titleDot(3.25, 12.45, 2.1, 2.1);
constexpr QRectF firstBar(4, 7.1, 7, 1.3);
constexpr QRectF secondBar(4, 4.5, 5, 1.3);
constexpr QColor alarmRed(255, 59, 48);

class GlyphPainter {
public:
    GlyphPainter(QImage &image, const QColor &ink) : m_painter(&image), m_scale(image.width() / canvas) {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(ink);
    }

    void drawWindow() {
        const double width = std::max(1, qRound(stroke * m_scale));
        const QRectF outer = edgesSnapped(outline.adjusted(-stroke / 2, -stroke / 2, stroke / 2, stroke / 2));
        const QRectF inner = outer.adjusted(width, width, -width, -width);
        const double radius = (outlineRadius + stroke / 2) * m_scale;
        QPainterPath frame; // odd-even: what lies in both is empty
        frame.addRoundedRect(outer, radius, radius);
        frame.addRoundedRect(inner, std::max(0.0, radius - width), std::max(0.0, radius - width));
        m_painter.drawPath(frame);

        QRectF line = snapped(titleLine);
        line.setLeft(inner.left());
        line.setRight(inner.right());
        m_painter.drawRect(line);

        QRectF dot = scaled(titleDot);
        dot.moveCenter({dot.center().x(), (inner.top() + line.top()) / 2});
        m_painter.drawEllipse(dot);
        drawBar(firstBar);
        drawBar(secondBar);
    }

    void drawAlarm() {
        const double size = dotSize * m_scale;
        m_painter.setBrush(alarmRed);
        m_painter.drawEllipse(QRectF(canvas * m_scale - size, 0, size, size));
    }

private:
    void drawBar(const QRectF &bar) {
        const double radius = barRadius * m_scale;
        m_painter.drawRoundedRect(snapped(bar), radius, radius);
    }

    /// In pixels, y downwards.
    [[nodiscard]] QRectF scaled(const QRectF &points) const {
        return {points.x() * m_scale, (canvas - points.bottom()) * m_scale, points.width() * m_scale,
                points.height() * m_scale};
    }

    /// Every edge on its own, so that what lies in the middle stays there.
    [[nodiscard]] QRectF edgesSnapped(const QRectF &points) const {
        const QRectF pixels = scaled(points);
        return {QPointF(qRound(pixels.left()), qRound(pixels.top())),
                QPointF(qRound(pixels.right()), qRound(pixels.bottom()))};
    }

    /// Its place and its size, so that bars of one thickness stay so.
    [[nodiscard]] QRectF snapped(const QRectF &points) const {
        const QRectF pixels = scaled(points);
        return {static_cast<double>(qRound(pixels.x())), static_cast<double>(qRound(pixels.y())),
                static_cast<double>(std::max(1, qRound(pixels.width()))),
                static_cast<double>(std::max(1, qRound(pixels.height())))};
    }

    QPainter m_painter;
    double m_scale; ///< pixels a point
};

} // namespace

QImage trayGlyph(int size, const QColor &ink, bool alarm) {
    if (size < 1)
        return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    GlyphPainter painter(image, ink);
    painter.drawWindow();
    if (alarm)
        painter.drawAlarm();
    return image;
}

} // namespace tarnvale
