#include "presentation/window/PagePicture.h"

#include "presentation/window/PagePictures.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>

namespace tarnvale {

PagePicture::PagePicture(QQuickItem *parent) : QQuickPaintedItem(parent) {
    connect(this, &PagePicture::sourceChanged, this, &PagePicture::look);
    connect(this, &PagePicture::looksChanged, this, [this] { update(); });
}

void PagePicture::setPictures(PagePictures *pictures) {
    if (m_pictures == pictures)
        return;
    if (m_pictures)
        m_pictures->disconnect(this);
    m_pictures = pictures;
    if (m_pictures)
        connect(m_pictures, &PagePictures::changed, this, &PagePicture::look);
    Q_EMIT sourceChanged();
}

void PagePicture::setPort(int port) {
    if (std::exchange(m_port, port) == port)
        return;
    m_stamp = 0;
    Q_EMIT sourceChanged();
}

void PagePicture::look() {
    const qint64 stamp = m_pictures ? m_pictures->stamp(m_port) : 0;
    if (std::exchange(m_stamp, stamp) != stamp) {
        m_scaled = {};
        update();
    }
    if (std::exchange(m_hasPicture, stamp != 0) != (stamp != 0))
        Q_EMIT hasPictureChanged();
}

void PagePicture::paint(QPainter *painter) {
    if (!m_hasPicture || !m_pictures || width() < 1 || height() < 1)
        return;
    const double scale = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
    const QSize pixels = (size() * scale).toSize();
    if (m_scaled.size() != pixels) {
        const QImage whole = m_pictures->picture(m_port);
        m_scaled = whole.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation)
                       .copy(0, 0, pixels.width(), pixels.height());
    }
    painter->setRenderHint(QPainter::Antialiasing);
    QPainterPath edge;
    edge.addRoundedRect(boundingRect().adjusted(0.5, 0.5, -0.5, -0.5), m_radius, m_radius);
    QBrush brush(m_scaled);
    brush.setTransform(QTransform::fromScale(width() / m_scaled.width(), height() / m_scaled.height()));
    painter->fillPath(edge, brush);
    painter->setPen(QPen(m_strokeColor, 1));
    painter->drawPath(edge);
}

} // namespace tarnvale
