#pragma once

class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Panel`, and what it needs, known to `engine`.
void registerPanel(QQmlEngine &engine);

} // namespace tarnvale
