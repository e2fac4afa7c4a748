#pragma once

#include "discovery/linux/SocketDiag.h"

#include <string_view>
#include <vector>

namespace tarnvale {

/// The sockets in LISTEN state of `/proc/net/tcp` or `/proc/net/tcp6` (proc(5)), in the kernel's order. Rows
/// that can't be read and rows in other states are skipped.
[[nodiscard]] std::vector<Listener> parseProcNetTcp(std::string_view table);

} // namespace tarnvale
