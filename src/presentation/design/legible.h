#pragma once

#include <QColor>

namespace tarnvale {

/// How much two opaque colours stand out from each other, from 1 to 21 (WCAG 2, contrast ratio).
[[nodiscard]] double contrast(const QColor &one, const QColor &other);

/// `color` where it stands out from `ground` by `ratio`; else the nearest colour of its hue that does, darker
/// on a light ground and lighter on a dark one. Both are taken as opaque.
[[nodiscard]] QColor legible(const QColor &color, const QColor &ground, double ratio);

} // namespace tarnvale
