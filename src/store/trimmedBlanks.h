#pragma once

#include <string>

namespace tarnvale {

/// `text` without spaces and tabs at its ends.
[[nodiscard]] inline std::string trimmedBlanks(const std::string &text) {
    const std::size_t first = text.find_first_not_of(" \t");
    const std::size_t last = text.find_last_not_of(" \t");
    return first == text.npos ? std::string() : text.substr(first, last - first + 1);
}

} // namespace tarnvale
