#pragma once

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSGTexture>

namespace tarnvale {

/// What looks the same wherever it stands: one picture, made for the pixels of its screen. Main thread.
class PictureItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS
public:
    explicit PictureItem(QQuickItem *parent = nullptr);

protected:
    /// The picture for a screen of `scale` pixels a unit; a null one leaves the item empty. Called by the
    /// thread that draws, while the main thread waits.
    [[nodiscard]] virtual QImage picture(double scale) const = 0;

    /// Where a picture of `size` stands in the item.
    [[nodiscard]] virtual QPointF placeOf(const QSizeF &size) const;

    /// How it is drawn where its pixels don't meet the screen's.
    [[nodiscard]] virtual QSGTexture::Filtering filtering() const { return QSGTexture::Nearest; }

    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
};

} // namespace tarnvale
