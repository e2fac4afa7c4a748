#include "commands/desktopOpener.h"

#include "discovery/findTool.h"

namespace tarnvale {

std::optional<std::string> desktopOpener() {
    return findInPath("xdg-open");
}

} // namespace tarnvale
