#include "commands/serviceWords.h"

#include <string_view>

namespace tarnvale {

namespace {

/// `text` as one word of a shell; in single quotes only where it has to be.
std::string shellWord(std::string_view text) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789@%+=:,./-_";
    if (!text.empty() && text.find_first_not_of(plain) == text.npos)
        return std::string(text);
    std::string word = "'";
    for (const char c : text)
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

} // namespace

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
