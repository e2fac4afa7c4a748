#pragma once

#include "platform/PreviewCapturer.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>

#include <array>

namespace tarnvale {

/// Paints what could be the page of some server, as its picture shows it.
class DemoPage {
public:
    explicit DemoPage(std::int64_t port)
        : m_port(port), m_accent(QColor::fromHsl(static_cast<int>(port * 47 % 360), 130, 120)) {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(Qt::NoPen);
        fill({0, 0, 640, 400}, QColor(isDark() ? 0x15181d : 0xfbfbfa));
    }

    [[nodiscard]] QByteArray draw() {
        const std::array kinds{&DemoPage::shop, &DemoPage::dashboard, &DemoPage::article};
        bar();
        (this->*kinds[static_cast<std::size_t>(m_port % 3)])();
        m_painter.end();
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        m_image.save(&buffer, "PNG");
        return bytes;
    }

private:
    [[nodiscard]] bool isDark() const { return m_port % 2 == 0; }
    [[nodiscard]] QColor ink(int percent) const {
        QColor colour(isDark() ? Qt::white : Qt::black);
        colour.setAlpha(percent * 255 / 100);
        return colour;
    }
    void fill(const QRectF &area, const QColor &colour, double radius = 0) {
        m_painter.setBrush(colour);
        m_painter.drawRoundedRect(area, radius, radius);
    }
    /// Lines of writing, too small to read.
    void text(double left, double top, double width, int lines, double size = 6) {
        for (int line = 0; line < lines; ++line)
            fill({left, top + line * size * 2.2, width * (line + 1 == lines ? 0.6 : 1), size}, ink(22),
                 size / 2);
    }

    void bar() {
        fill({0, 0, 640, 36}, ink(5));
        fill({20, 10, 16, 16}, m_accent, 5);
        text(44, 14, 60, 1, 8);
        for (int entry = 0; entry < 4; ++entry)
            text(400 + entry * 56, 15, 36, 1);
    }
    void shop() {
        text(20, 56, 180, 1, 14);
        for (int tile = 0; tile < 8; ++tile) {
            const double left = 20 + tile % 4 * 152;
            const double top = 92 + tile / 4 * 156;
            fill({left, top, 144, 100}, m_accent.lighter(100 + tile * 8), 8);
            text(left, top + 110, 120, 2);
        }
    }
    void dashboard() {
        fill({0, 36, 120, 364}, ink(4));
        for (int entry = 0; entry < 7; ++entry)
            text(20, 60 + entry * 28, 76, 1, 7);
        for (int tile = 0; tile < 3; ++tile) {
            fill({140.0 + tile * 164, 56, 152, 72}, ink(5), 8);
            text(152 + tile * 164, 70, 60, 1);
            text(152 + tile * 164, 92, 90, 1, 16);
        }
        fill({140, 144, 480, 236}, ink(5), 8);
        for (int column = 0; column < 22; ++column) {
            const double height = 40.0 + static_cast<double>((m_port * 31 + column * column * 17) % 150);
            fill({156.0 + column * 21, 364 - height, 13, height}, m_accent, 3);
        }
    }
    void article() {
        fill({120, 60, 400, 120}, m_accent, 10);
        text(120, 200, 300, 1, 16);
        text(120, 236, 400, 5);
        text(120, 316, 400, 5);
    }

    std::int64_t m_port;
    QColor m_accent;
    QImage m_image{PreviewCapturer::pictureWidth, 400, QImage::Format_RGB32};
    QPainter m_painter{&m_image};
};

/// The picture of a made-up page; each port has its own.
inline std::optional<QByteArray> demoPage(std::int64_t port) {
    return DemoPage(port).draw();
}

} // namespace tarnvale
