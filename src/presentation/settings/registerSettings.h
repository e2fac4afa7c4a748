#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Settings`, and what it needs, known to `engine`.
void registerSettings(QQmlEngine &engine);

} // namespace tarnvale
