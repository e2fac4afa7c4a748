#include "probes/isValidHealthPath.h"

#include <algorithm>

namespace tarnvale {

bool isValidHealthPath(std::string_view path) {
    constexpr std::size_t longest = 200;
    return path.starts_with('/') && path.size() <= longest &&
           std::ranges::all_of(path, [](char c) { return c >= '!' && c <= '~'; });
}

} // namespace tarnvale
