#pragma once

#include "discovery/ListeningPort.h"

#include <cstdint>
#include <string>

namespace tarnvale {

/// The command, as typed in a shell, that stops the service of `port`, which must have one. `uid` is the
/// current user's.
[[nodiscard]] std::string stopAdvice(const ListeningPort &port, std::uint32_t uid);

} // namespace tarnvale
