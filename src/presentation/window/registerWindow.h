#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Window`, and what it needs, known to `engine`.
void registerWindow(QQmlEngine &engine);

} // namespace tarnvale
