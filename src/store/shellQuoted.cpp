#include "store/shellQuoted.h"

#include <string_view>

namespace tarnvale {

namespace {

std::string quoted(const std::string &argument) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./=:@%+,";
    if (!argument.empty() && argument.find_first_not_of(plain) == argument.npos)
        return argument;
    std::string word = "'";
    for (const char c : argument)
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

} // namespace

std::string shellQuoted(const std::vector<std::string> &arguments) {
    std::string line;
    for (const std::string &argument : arguments)
        line += (line.empty() ? "" : " ") + quoted(argument);
    return line;
}

} // namespace tarnvale
