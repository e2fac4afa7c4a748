#include "discovery/findTool.h"

#include "discovery/text.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {

std::optional<std::string> firstExecutable(const std::vector<std::string> &paths) {
    for (const std::string &path : paths) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0)
            return path;
    }
    return std::nullopt;
}

std::optional<std::string> findInPath(const std::string &name) {
    std::vector<std::string> candidates;
    const char *path = std::getenv("PATH");
    for (const std::string_view folder : split(path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin", ':'))
        if (folder.starts_with('/'))
            candidates.push_back(std::string(folder).append("/").append(name));
    return firstExecutable(candidates);
}

std::string homeFolder() {
    if (const char *home = std::getenv("HOME"); home != nullptr && *home == '/')
        return home;
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_dir;
    return "/";
}

} // namespace tarnvale
