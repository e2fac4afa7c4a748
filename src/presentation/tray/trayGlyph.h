#pragma once

#include <QColor>
#include <QImage>

namespace tarnvale {

/// Our mark for a tray, a small application window in `ink`, on a transparent square of `size` by `size`
/// pixels (none for a size below 1). Its straight edges lie on whole pixels at every size, so for a scaled
/// screen ask for device pixels. With `alarm` a red dot sits in the upper right corner and touches both
/// edges.
[[nodiscard]] QImage trayGlyph(int size, const QColor &ink, bool alarm);

} // namespace tarnvale
