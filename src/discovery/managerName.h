#pragma once

#include "discovery/ListeningPort.h"

#include <string_view>

namespace tarnvale {

/// The name that users know a service manager by: "launchd" or "systemd".
[[nodiscard]] std::string_view managerName(ServiceManager manager);

} // namespace tarnvale
