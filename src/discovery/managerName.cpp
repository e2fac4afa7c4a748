#include "discovery/managerName.h"

namespace tarnvale {

std::string_view managerName(ServiceManager manager) {
    return manager == ServiceManager::launchd ? "launchd" : "systemd";
}

} // namespace tarnvale
