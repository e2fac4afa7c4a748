#pragma once

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QQuickPaintedItem>

namespace tarnvale {

class PagePictures;

/// The picture of a server's front page, scaled to fill the item from its upper edge on, with round corners.
/// It keeps no more pixels than it shows.
class PagePicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tarnvale::PagePictures *pictures READ pictures WRITE setPictures NOTIFY sourceChanged)
    Q_PROPERTY(int port READ port WRITE setPort NOTIFY sourceChanged)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY looksChanged)
    Q_PROPERTY(QColor strokeColor MEMBER m_strokeColor NOTIFY looksChanged)
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY hasPictureChanged)

public:
    explicit PagePicture(QQuickItem *parent = nullptr);

    [[nodiscard]] PagePictures *pictures() const { return m_pictures; }
    [[nodiscard]] int port() const { return m_port; }
    [[nodiscard]] bool hasPicture() const { return m_hasPicture; }
    void setPictures(PagePictures *pictures);
    void setPort(int port);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void sourceChanged();
    void looksChanged();
    void hasPictureChanged();

private:
    void look();

    QPointer<PagePictures> m_pictures;
    int m_port = 0;
    double m_radius = 0;
    QColor m_strokeColor;
    QImage m_scaled;
    bool m_hasPicture = false;
    qint64 m_stamp = 0; ///< of the picture that is shown
};

} // namespace tarnvale
