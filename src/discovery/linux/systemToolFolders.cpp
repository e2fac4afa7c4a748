#include "discovery/findTool.h"

namespace tarnvale {

std::vector<std::string> systemToolFolders(const std::string &home) {
    return {"/home/linuxbrew/.linuxbrew/bin", "/usr/bin", home + "/.local/bin", "/snap/bin"};
}

} // namespace tarnvale
