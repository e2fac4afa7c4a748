#pragma once

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnvale {

/// A program to start.
struct SpawnOrder {
    std::string path;
    std::vector<std::string> arguments; ///< behind its own name

    /// What the program finds open, by its own numbers, which are below 10; the values are ours. Of 0, 1 and
    /// 2 those that are missing here are the null device. Nothing else is open.
    std::map<int, int> descriptors = {};

    int folder = -1; ///< an open folder to work in; -1 is ours
    std::optional<std::map<std::string, std::string>> environment = {}; ///< none: ours
    bool newSession = false;
};

/// Starts it with no signal blocked or ignored and returns its pid, which the caller has to reap. The error
/// is the `errno` of what failed.
[[nodiscard]] std::expected<pid_t, int> spawn(const SpawnOrder &order);

} // namespace tarnvale
