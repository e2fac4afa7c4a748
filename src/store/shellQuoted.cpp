#include "store/shellQuoted.h"

#include "discovery/shellWord.h"

namespace tarnvale {

std::string shellQuoted(const std::vector<std::string> &arguments) {
    std::string line;
    for (const std::string &argument : arguments)
        line += (line.empty() ? "" : " ") + shellWord(argument);
    return line;
}

} // namespace tarnvale
