#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A whole process, from before its start to after its end.
struct CommandRun {
    std::chrono::nanoseconds wall{};
    long peakKB = 0; ///< the most memory that was resident
};

/// A command that is run again and again, with the null device for its input and output.
class TimedCommand {
public:
    /// `words` are the path of the program and its arguments.
    explicit TimedCommand(std::vector<std::string> words);

    /// Nothing when it couldn't be started or didn't end with status 0.
    [[nodiscard]] std::optional<CommandRun> run();

    [[nodiscard]] const char *path() const { return m_words.front().c_str(); }

private:
    std::vector<std::string> m_words;
    std::vector<char *> m_arguments; ///< points into `m_words`, as posix_spawn takes them
};

/// The middle value, the upper of two; `values` must not be empty.
[[nodiscard]] std::chrono::nanoseconds median(std::vector<std::chrono::nanoseconds> values);

/// `time` in whole microseconds, as the benchmark programs print it.
[[nodiscard]] long long inMicroseconds(std::chrono::nanoseconds time);

} // namespace tarnvale
