#pragma once

#include "presentation/design/PictureItem.h"

#include <QColor>
#include <QString>

namespace tarnvale {

/// A tool's logo, or else its symbol, on a rounded ground of its colour. The ground fades downwards; what
/// stands on it is as dark or light as it takes to be made out.
class ToolPicture : public PictureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString symbol MEMBER m_symbol NOTIFY looksChanged)
    Q_PROPERTY(QString logo MEMBER m_logo NOTIFY looksChanged)
    Q_PROPERTY(QColor tint MEMBER m_tint NOTIFY looksChanged)
    Q_PROPERTY(QColor surface MEMBER m_surface NOTIFY looksChanged)
    Q_PROPERTY(bool dark MEMBER m_dark NOTIFY looksChanged)
public:
    explicit ToolPicture(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void looksChanged();

protected:
    [[nodiscard]] QImage picture(double scale) const override;

private:
    [[nodiscard]] QImage paintedPicture(int side, double scale) const;

    QString m_symbol;
    QString m_logo;
    QColor m_tint;
    QColor m_surface = Qt::white; ///< what the tile lies on
    bool m_dark = false;          ///< that is dark
};

} // namespace tarnvale
