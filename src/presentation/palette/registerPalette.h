#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Palette`, and what it needs, known to `engine`.
void registerPalette(QQmlEngine &engine);

} // namespace tarnvale
