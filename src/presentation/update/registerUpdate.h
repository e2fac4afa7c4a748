#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Update`, and what it needs, known to `engine`.
void registerUpdate(QQmlEngine &engine);

} // namespace tarnvale
