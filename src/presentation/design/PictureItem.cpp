#include "presentation/design/PictureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace tarnvale {

PictureItem::PictureItem(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QPointF PictureItem::placeOf(const QSizeF & /*size*/) const {
    return {};
}

QSGNode *PictureItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    const double scale = window()->effectiveDevicePixelRatio();
    const QImage image = width() > 0 && height() > 0 ? picture(scale) : QImage();
    if (image.isNull()) {
        delete node;
        return nullptr;
    }
    auto *shown = static_cast<QSGImageNode *>(node);
    if (shown == nullptr) {
        shown = window()->createImageNode();
        shown->setOwnsTexture(true);
    }
    const QSizeF size = QSizeF(image.size()) / scale;
    shown->setTexture(window()->createTextureFromImage(image));
    shown->setFiltering(filtering());
    shown->setRect(QRectF(placeOf(size), size));
    return shown;
}

void PictureItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

} // namespace tarnvale
