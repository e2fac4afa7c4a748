#pragma once

#include "platform/Appearance.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>
#include <QString>

#include <optional>

namespace tarnvale {

/// What the desktop prefers, as the theme needs it: where the desktop's own word is missing, Qt's palette and
/// font stand in. One a program, made at its first use and gone with the application object.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    Q_PROPERTY(bool hasAccent READ hasAccent NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)
    Q_PROPERTY(QString fontFamily READ fontFamily NOTIFY changed)
    Q_PROPERTY(QString monoFamily READ monoFamily NOTIFY changed)
public:
    static Appearance &instance();
    static Appearance *create(QQmlEngine *, QJSEngine *);

    /// What the desktop says from now on.
    void setDesktop(const DesktopAppearance &desktop);

    /// Fixes what is set here, whatever the desktop says: for tests and pictures.
    void setOverride(std::optional<bool> dark, std::optional<bool> reduceMotion);

    [[nodiscard]] bool isDark() const;
    [[nodiscard]] bool highContrast() const { return m_desktop.highContrast; }
    [[nodiscard]] bool reduceMotion() const { return m_reduceMotion.value_or(m_desktop.reduceMotion); }
    [[nodiscard]] bool hasAccent() const { return m_desktop.accent.has_value(); }

    /// Dark enough for white text on it; no colour when the desktop has none.
    [[nodiscard]] QColor accent() const;

    /// What the sizes of the theme are multiplied by.
    [[nodiscard]] double textScale() const;
    [[nodiscard]] QString fontFamily() const;
    [[nodiscard]] QString monoFamily() const;

    /// See `legible()`.
    Q_INVOKABLE [[nodiscard]] QColor legible(const QColor &color, const QColor &ground, double ratio) const;

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit Appearance(QObject *application);

    DesktopAppearance m_desktop;
    std::optional<bool> m_dark;
    std::optional<bool> m_reduceMotion;
};

/// By how much a text size of a desktop, in points, differs from the usual ones of 9 to 11.
[[nodiscard]] double fontScale(double points);

} // namespace tarnvale
