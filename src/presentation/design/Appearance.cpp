#include "presentation/design/Appearance.h"

#include "presentation/design/legible.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QPointer>

#include <algorithm>

namespace tarnvale {

double fontScale(double points) {
    constexpr double smallest = 9;
    constexpr double largest = 11;
    if (points <= 0)
        return 1; // Qt's font is set in pixels
    return points / std::clamp(points, smallest, largest);
}

Appearance &Appearance::instance() {
    static QPointer<Appearance> instance;
    if (!instance)
        instance = new Appearance(QCoreApplication::instance());
    return *instance;
}

Appearance *Appearance::create(QQmlEngine *, QJSEngine *) {
    Appearance *appearance = &instance();
    QJSEngine::setObjectOwnership(appearance, QJSEngine::CppOwnership);
    return appearance;
}

Appearance::Appearance(QObject *application) : QObject(application) {
    application->installEventFilter(this);
}

void Appearance::setDesktop(const DesktopAppearance &desktop) {
    if (desktop == m_desktop)
        return;
    m_desktop = desktop;
    Q_EMIT changed();
}

void Appearance::setOverride(std::optional<bool> dark, std::optional<bool> reduceMotion) {
    m_dark = dark;
    m_reduceMotion = reduceMotion;
    Q_EMIT changed();
}

bool Appearance::isDark() const {
    if (m_dark || m_desktop.isDark)
        return m_dark ? *m_dark : *m_desktop.isDark;
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QColor Appearance::accent() const {
    if (!m_desktop.accent)
        return {};
    const auto &[red, green, blue] = *m_desktop.accent;
    constexpr double readable = 4.5;
    return tarnvale::legible(
        QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue)),
        Qt::white, readable);
}

/// An X server scales the whole picture by the text's factor already.
double Appearance::textScale() const {
    constexpr double smallest = 0.8;
    constexpr double largest = 2.5;
    const bool isWayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    const double points = m_desktop.font ? m_desktop.font->points : QGuiApplication::font().pointSizeF();
    return std::clamp(fontScale(points) * (isWayland ? m_desktop.textScale : 1), smallest, largest);
}

QString Appearance::fontFamily() const {
    const QString wanted = m_desktop.font ? QString::fromStdString(m_desktop.font->family) : QString();
    return QFontDatabase::hasFamily(wanted) ? wanted : QGuiApplication::font().family();
}

QString Appearance::monoFamily() const {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

QColor Appearance::legible(const QColor &color, const QColor &ground, double ratio) const {
    return tarnvale::legible(color, ground, ratio);
}

bool Appearance::eventFilter(QObject *watched, QEvent *event) {
    const bool isChange =
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange;
    if (isChange && watched == parent())
        Q_EMIT changed();
    return false;
}

} // namespace tarnvale
