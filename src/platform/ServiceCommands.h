#pragma once

#include "discovery/ListeningPort.h"
#include "platform/Tools.h"

#include <string>
#include <sys/types.h>

namespace tarnvale {

/// The command by which `manager` stops the service `label`, for the user `uid`. A service of the system
/// takes as long as the user needs to allow it.
[[nodiscard]] ToolRun stopServiceRun(const std::string &label, ServiceManager manager, uid_t uid,
                                     const std::string &systemctl = "/usr/bin/systemctl");

/// The same for a restart.
[[nodiscard]] ToolRun restartServiceRun(const std::string &label, ServiceManager manager, uid_t uid,
                                        const std::string &systemctl = "/usr/bin/systemctl");

} // namespace tarnvale
