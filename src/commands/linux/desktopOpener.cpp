#include "commands/desktopOpener.h"

#include "discovery/findTool.h"
#include "discovery/text.h"

#include <cstdlib>

namespace tarnvale {

std::optional<std::string> desktopOpener() {
    std::vector<std::string> candidates;
    const char *path = std::getenv("PATH");
    for (const std::string_view folder : split(path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin", ':'))
        if (folder.starts_with('/'))
            candidates.push_back(std::string(folder) + "/xdg-open");
    return firstExecutable(candidates);
}

} // namespace tarnvale
