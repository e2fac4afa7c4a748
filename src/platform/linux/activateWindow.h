#pragma once

#include "discovery/ListeningPort.h"

#include <string>
#include <vector>

namespace tarnvale {

/// Asks the window manager of the X server `display`, or of the one that `DISPLAY` names when it is empty, to
/// bring a window to the front: of the first of `pids` that has any, the one that lies on top.
///
/// The desktop's background and its panels are no such windows, nor are those of programs on other machines.
/// False when there is none, or no X server, or a window manager that tells nothing of its windows
/// (EWMH 1.5).
[[nodiscard]] bool activateWindowOf(const std::vector<Pid> &pids, const std::string &display);

} // namespace tarnvale
