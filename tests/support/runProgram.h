#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// How a program went that ran from start to end.
struct ProgramRun {
    int status = -1; ///< exit status; minus the signal's number when one ended it
    std::string output;
    std::string error;
};

/// Runs the program at `arguments[0]` to its end with no input. Its standard output is gathered, or goes to
/// the descriptor `output`. Signals act on it as they do by default.
[[nodiscard]] ProgramRun runProgram(const std::vector<std::string> &arguments,
                                    std::optional<int> output = std::nullopt);

} // namespace tarnvale
