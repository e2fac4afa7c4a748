#include "commands/serviceWords.h"

#include "discovery/shellWord.h"

#include <string_view>

namespace tarnvale {

std::string stopAdvice(const ListeningPort &port, std::uint32_t uid) {
    if (const auto formula = port.brewService())
        return "brew services stop " + shellWord(*formula);
    const std::string service = shellWord(port.service.value_or(std::string()));
    switch (port.serviceManager) {
    case ServiceManager::systemd:
        return "sudo systemctl stop " + service;
    case ServiceManager::systemdUser:
        return "systemctl --user stop " + service;
    case ServiceManager::launchd:
        break;
    }
    return "launchctl bootout gui/" + std::to_string(uid) + "/" + service;
}

} // namespace tarnvale
