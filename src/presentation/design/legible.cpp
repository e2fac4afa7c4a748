#include "presentation/design/legible.h"

#include <algorithm>
#include <cmath>

namespace tarnvale {

namespace {

double linear(double share) {
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

/// WCAG 2, relative luminance.
double luminance(const QColor &color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor withLightness(const QColor &color, double lightness) {
    return QColor::fromHslF(std::max(0.0F, color.hslHueF()), color.hslSaturationF(),
                            static_cast<float>(std::clamp(lightness, 0.0, 1.0)));
}

} // namespace

double contrast(const QColor &one, const QColor &other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor legible(const QColor &color, const QColor &ground, double ratio) {
    constexpr int steps = 50;
    const double step = (luminance(ground) > 0.18 ? -1.0 : 1.0) / steps;
    QColor result = color.toRgb();
    for (int i = 1; i <= steps && contrast(result, ground) < ratio; ++i)
        result = withLightness(color, color.lightnessF() + i * step);
    return result.toRgb();
}

} // namespace tarnvale
