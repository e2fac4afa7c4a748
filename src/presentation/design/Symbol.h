#pragma once

#include "presentation/design/PictureItem.h"

#include <QColor>
#include <QString>

namespace tarnvale {

/// A symbol or a tool's logo in one colour, sharp at every scale of the screen. An unknown name stays empty.
/// Screen readers don't meet it: the text beside it says the same.
class Symbol : public PictureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(double size READ fontSize WRITE setFontSize NOTIFY sizeChanged)
    Q_PROPERTY(bool turns READ turns WRITE setTurns NOTIFY turnsChanged)
public:
    explicit Symbol(QQuickItem *parent = nullptr);

    [[nodiscard]] const QString &name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    /// That of the text it goes with: a symbol's box is a little larger, a logo's is just as large.
    [[nodiscard]] double fontSize() const { return m_fontSize; }
    void setFontSize(double size);
    /// It is being rotated, so its pixels don't meet the screen's.
    [[nodiscard]] bool turns() const { return m_turns; }
    void setTurns(bool turns);

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void sizeChanged();
    void turnsChanged();

protected:
    [[nodiscard]] QImage picture(double scale) const override;
    [[nodiscard]] QPointF placeOf(const QSizeF &size) const override;
    [[nodiscard]] QSGTexture::Filtering filtering() const override;

private:
    void fitBox();

    QString m_name;
    QColor m_color = Qt::black;
    double m_fontSize = 13;
    bool m_turns = false;
};

} // namespace tarnvale
