#pragma once

#include "discovery/ListeningPort.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>

namespace tarnvale {

/// The sections of every list of ports.
enum class PortGroup : std::uint8_t { web, services, other };

/// In the order in which they are listed.
inline constexpr std::array portGroups{PortGroup::web, PortGroup::services, PortGroup::other};

/// Whether a port counts as a web server, by what is known of its health and by its looks.
using WebTest = std::function<bool(const ListeningPort &)>;

/// The section's title: "Databases & Services".
[[nodiscard]] QString title(PortGroup group);

/// The section that `port` falls in. A web server is one whatever else it is.
[[nodiscard]] PortGroup portGroup(const ListeningPort &port, const WebTest &isWeb);

} // namespace tarnvale
