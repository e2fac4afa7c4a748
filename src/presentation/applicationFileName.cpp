#include "presentation/applicationFileName.h"

#include "discovery/text.h"

namespace tarnvale {

std::string applicationFileName(const std::string &hostApp) {
    const std::string_view file = lastPathComponent(hostApp);
    const std::size_t dot = file.rfind('.');
    return std::string(dot == 0 ? file : file.substr(0, dot)); // a hidden file's dot begins its name
}

} // namespace tarnvale
