#pragma once

#include "presentation/tray/activationPoint.h"

#include <vector>

namespace tarnvale {

/// The screens of the desktop as they are now, the primary one first. Main thread, with a `QGuiApplication`.
[[nodiscard]] std::vector<ScreenFrame> screenFrames();

} // namespace tarnvale
