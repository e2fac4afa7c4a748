#include "discovery/naming.h"

#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <unordered_set>

namespace tarnvale {

namespace {

constexpr std::array<std::string_view, 3> architectureSuffixes{"-arm64", "-x86_64", "-amd64"};
constexpr std::array<std::string_view, 3> webRootFolders{"public", "web", "www"};
constexpr std::array<std::string_view, 8> genericFolderNames{"bin",    "sbin",         "lib", "libexec",
                                                             "daemon", "source_files", "tmp", "/"};

const std::unordered_set<std::string_view> &knownServiceCommands() {
    static const std::unordered_set<std::string_view> commands{
        "postgres",    "mysqld",    "mariadbd", "redis-server", "valkey-server",
        "mongod",      "memcached", "ollama",   "mailpit",      "mailhog",
        "meilisearch", "minio",     "caddy",    "httpd",        "nginx"};
    return commands;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t digitRun(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    return static_cast<std::size_t>(end - text.begin());
}

/// `v?\d+(\.\d+)+` as a whole.
bool isVersionNumber(std::string_view name) {
    if (name.starts_with('v'))
        name.remove_prefix(1);
    for (int part = 1;; ++part) {
        const std::size_t digits = digitRun(name);
        if (digits == 0)
            return false;
        name.remove_prefix(digits);
        if (name.empty())
            return part > 1;
        if (name.front() != '.')
            return false;
        name.remove_prefix(1);
    }
}

} // namespace

std::string_view strippingArchSuffix(std::string_view command) {
    for (const std::string_view suffix : architectureSuffixes)
        if (command.ends_with(suffix))
            return command.substr(0, command.size() - suffix.size());
    return command;
}

std::string canonicalCommand(std::string_view command) {
    std::string name = lowercased(strippingArchSuffix(command));
    return name == "apache2" ? "httpd" : name;
}

bool isKnownServiceCommand(std::string_view command) {
    const std::string name = canonicalCommand(command);
    return knownServiceCommands().contains(name) || name.starts_with("lm studio");
}

bool isGenericFolderName(std::string_view name) {
    return std::find(genericFolderNames.begin(), genericFolderNames.end(), name) !=
               genericFolderNames.end() ||
           isVersionNumber(name);
}

bool isWebRootFolder(std::string_view name) {
    return std::find(webRootFolders.begin(), webRootFolders.end(), name) != webRootFolders.end();
}

} // namespace tarnvale
