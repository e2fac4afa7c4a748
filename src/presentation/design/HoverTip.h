#pragma once

#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QString>

namespace tarnvale {

/// The tool tip of the item that this stands in: shown while `hovered`, when there is a text. Costs nothing
/// until then.
class HoverTip : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool hovered READ isHovered WRITE setHovered NOTIFY hoveredChanged)
    Q_PROPERTY(QQuickItem *target READ target WRITE setTarget NOTIFY targetChanged)
public:
    using QObject::QObject;
    HoverTip(const HoverTip &) = delete;
    HoverTip &operator=(const HoverTip &) = delete;
    ~HoverTip() override;

    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);

    [[nodiscard]] bool isHovered() const { return m_isHovered; }
    void setHovered(bool isHovered);

    /// The item that this stands in, unless another was set.
    [[nodiscard]] QQuickItem *target() const;
    void setTarget(QQuickItem *target);

Q_SIGNALS:
    void textChanged();
    void hoveredChanged();
    void targetChanged();

private:
    QString m_text;
    bool m_isHovered = false;
    QPointer<QQuickItem> m_target;
};

} // namespace tarnvale
