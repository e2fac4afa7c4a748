#include "presentation/installCommand.h"

#include "discovery/shellWord.h"

namespace tarnvale {

std::string installCommand(std::string_view executable) {
    return "sudo ln -sf " + singleQuoted(executable) + " /usr/local/bin/tarnctl";
}

} // namespace tarnvale
