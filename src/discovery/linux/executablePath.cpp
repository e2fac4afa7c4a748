#include "discovery/executablePath.h"

#include "discovery/linux/procFiles.h"

#include <fcntl.h>

namespace tarnvale {

std::string executablePath() {
    return readLinkAt(AT_FDCWD, "/proc/self/exe").value_or(std::string());
}

} // namespace tarnvale
