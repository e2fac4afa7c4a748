#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Shared`, and what it needs, known to `engine`.
void registerShared(QQmlEngine &engine);

} // namespace tarnvale
