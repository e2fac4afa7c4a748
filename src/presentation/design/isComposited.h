#pragma once

namespace tarnvale {

/// Whether windows of ours may be translucent: always on Wayland and in memory (offscreen), on X11 while a
/// compositing manager runs (freedesktop.org, Extended Window Manager Hints, `_NET_WM_CM_Sn`), nowhere else.
/// Asks the X server anew at each call.
[[nodiscard]] bool isComposited();

} // namespace tarnvale
