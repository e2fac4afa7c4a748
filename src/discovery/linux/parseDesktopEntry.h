#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// The parts of a desktop file that tell which program it starts (freedesktop.org, Desktop Entry).
struct DesktopEntry {
    std::string program;   ///< the first word of `Exec`, unquoted, `env` and its settings skipped
    bool isHidden = false; ///< as good as deleted
    bool isShown = true;   ///< in menus

    bool operator==(const DesktopEntry &) const = default;
};

/// The main group of a desktop file; nothing when it is no application's or lacks `Exec`.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view content);

} // namespace tarnvale
