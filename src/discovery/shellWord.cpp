#include "discovery/shellWord.h"

namespace tarnvale {

std::string singleQuoted(std::string_view text) {
    std::string word = "'";
    for (const char c : text)
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

std::string shellWord(std::string_view text) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./=:@%+,";
    const bool isPlain = !text.empty() && text.find_first_not_of(plain) == text.npos;
    return isPlain ? std::string(text) : singleQuoted(text);
}

} // namespace tarnvale
