#pragma once

#include "discovery/ListeningPort.h"
#include "support/runProgram.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnvale {

/// The user that owns nothing, on every system.
constexpr uid_t nobody = 65534;

/// What a scan by `user` has on `port`. Of each record it brings pid, command, port, isExposed, cwd, args,
/// service, serviceManager and container. Only root may ask.
[[nodiscard]] std::vector<ListeningPort> scanPortAs(uid_t user, std::uint16_t port);

/// Runs the built program as `user`, who need not be able to see the folder that it was built in. Only root
/// may ask.
[[nodiscard]] std::string tarnctlAs(uid_t user, const std::vector<std::string> &words);

} // namespace tarnvale
