#pragma once

#include "discovery/ListeningPort.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnvale {

/// The name that users know a service manager by: "launchd" or "systemd".
[[nodiscard]] std::string_view managerName(ServiceManager manager);

/// The command, as typed in a shell, that stops the service of `port`, which must have one. `uid` is the
/// current user's.
[[nodiscard]] std::string stopAdvice(const ListeningPort &port, std::uint32_t uid);

} // namespace tarnvale
