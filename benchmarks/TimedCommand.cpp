#include "TimedCommand.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvale {

namespace {

using Clock = std::chrono::steady_clock;

/// What the child does with its standard descriptors. Made once: it is no part of what is measured.
const posix_spawn_file_actions_t *nullDevice() {
    static const posix_spawn_file_actions_t actions = [] {
        posix_spawn_file_actions_t made;
        posix_spawn_file_actions_init(&made);
        posix_spawn_file_actions_addopen(&made, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&made, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        return made;
    }();
    return &actions;
}

} // namespace

TimedCommand::TimedCommand(std::vector<std::string> words) : m_words(std::move(words)) {
    for (std::string &word : m_words)
        m_arguments.push_back(word.data());
    m_arguments.push_back(nullptr);
}

std::optional<CommandRun> TimedCommand::run() {
    pid_t pid = 0;
    int status = 0;
    rusage usage{};
    const auto start = Clock::now();
    if (posix_spawn(&pid, m_arguments.front(), nullDevice(), nullptr, m_arguments.data(), environ) != 0)
        return std::nullopt;
    while (wait4(pid, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    const auto end = Clock::now();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS)
        return std::nullopt;
    return CommandRun{.wall = end - start, .peakKB = usage.ru_maxrss};
}

std::chrono::nanoseconds median(std::vector<std::chrono::nanoseconds> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

long long inMicroseconds(std::chrono::nanoseconds time) {
    return std::chrono::round<std::chrono::microseconds>(time).count();
}

} // namespace tarnvale
