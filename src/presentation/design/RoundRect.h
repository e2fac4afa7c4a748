#pragma once

#include "presentation/design/PictureItem.h"

#include <QColor>

namespace tarnvale {

/// A rectangle with round corners, an edge within its bounds, and perhaps a second colour that it turns to
/// towards its lower end. Unlike `Rectangle` it has no seams where the screen's scale is not a whole number:
/// it is one picture, of whole pixels.
class RoundRect : public PictureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY looksChanged)
    Q_PROPERTY(QColor endColor MEMBER m_endColor NOTIFY looksChanged)
    Q_PROPERTY(QColor strokeColor MEMBER m_strokeColor NOTIFY looksChanged)
    Q_PROPERTY(double strokeWidth MEMBER m_strokeWidth NOTIFY looksChanged)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY looksChanged)
public:
    explicit RoundRect(QQuickItem *parent = nullptr);

    /// What is painted.
    struct Looks {
        QColor color;
        QColor endColor; ///< invalid: the same
        QColor strokeColor;
        double strokeWidth = 0;
        double radius = 0;
    };

    /// A rectangle of so many pixels for a screen of `scale` pixels a unit.
    [[nodiscard]] static QImage painted(const QSize &pixels, double scale, const Looks &looks);

Q_SIGNALS:
    void looksChanged();

protected:
    [[nodiscard]] QImage picture(double scale) const override;

private:
    QColor m_color = Qt::white;
    QColor m_endColor;
    QColor m_strokeColor;
    double m_strokeWidth = 0;
    double m_radius = 0;
};

} // namespace tarnvale
