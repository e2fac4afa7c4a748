#pragma once

#include <string>

namespace tarnvale {

/// The absolute path of the running program's own file, links resolved; empty when it can't be told.
[[nodiscard]] std::string executablePath();

} // namespace tarnvale
