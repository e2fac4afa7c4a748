#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The ids under which the application of a control group may have its desktop file, likeliest first: what
/// launchers, flatpak and snap put into the names of units ("app-gnome-org.gnome.Terminal-4242.scope"). Empty
/// for a group that belongs to no application.
[[nodiscard]] std::vector<std::string> applicationIds(std::string_view cgroup);

} // namespace tarnvale
