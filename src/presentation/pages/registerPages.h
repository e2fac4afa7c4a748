#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Pages`, and what it needs, known to `engine`.
void registerPages(QQmlEngine &engine);

} // namespace tarnvale
