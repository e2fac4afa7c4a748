#include "presentation/installCommand.h"

namespace tarnvale {

std::string installCommand(std::string_view executable) {
    std::string command = "sudo ln -sf '";
    for (const char c : executable)
        command += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return command + "' /usr/local/bin/tarnctl";
}

} // namespace tarnvale
