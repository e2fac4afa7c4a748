#pragma once

#include <string>
#include <vector>

namespace tarnvale {

/// An argument vector as one line of shell text that gives back the same vector.
[[nodiscard]] std::string shellQuoted(const std::vector<std::string> &arguments);

} // namespace tarnvale
