#pragma once

#include <optional>
#include <string>

namespace tarnvale {

/// The program that opens a URL the way the desktop would; nothing where none is installed.
[[nodiscard]] std::optional<std::string> desktopOpener();

} // namespace tarnvale
