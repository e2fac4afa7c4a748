#pragma once

#include "presentation/PortGroup.h"

namespace tarnvale {

/// The chips that narrow a list of ports.
enum class PortFilter : std::uint8_t { all, agents, web, services, other };

/// In the order in which they stand.
inline constexpr std::array portFilters{PortFilter::all, PortFilter::agents, PortFilter::web,
                                        PortFilter::services, PortFilter::other};

/// The chip's title: "Services".
[[nodiscard]] QString title(PortFilter filter);

/// Whether `port` stays in the list. `web`, `services` and `other` agree with the sections; `agents` keeps
/// what a coding agent has started, in any of them.
[[nodiscard]] bool matchesFilter(const ListeningPort &port, PortFilter filter, const WebTest &isWeb);

} // namespace tarnvale
