#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/ListeningPort.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A real program that a test starts, so that there is something to look at or to signal. It gets no output
/// and an input that stays open and silent; with this object it is killed and reaped at the latest.
class TestProcess {
public:
    /// Starts the program at `arguments[0]`, with `environment` instead of the test's own if it is given, and
    /// waits until it has come to wait for something or has ended.
    explicit TestProcess(const std::vector<std::string> &arguments,
                         const std::optional<std::vector<std::string>> &environment = std::nullopt);
    TestProcess(const TestProcess &) = delete;
    TestProcess &operator=(const TestProcess &) = delete;
    ~TestProcess();

    /// A process that does nothing for a minute.
    [[nodiscard]] static std::vector<std::string> sleeper() { return {"/bin/sleep", "60"}; }

    [[nodiscard]] Pid pid() const { return m_pid; }

    /// It hasn't ended yet, or nobody has asked `waitForEnd`.
    [[nodiscard]] bool isRunning() const;

    /// Waits a few seconds for the end and returns the wait status (wait(2)); nothing when it doesn't come.
    std::optional<int> waitForEnd();

    /// Waits until the process has ended, and leaves it unreaped.
    void becomeZombie();

private:
    Pid m_pid = -1;
    FileDescriptor m_input;
    std::optional<int> m_status;
};

/// A process number that the kernel never gives away.
constexpr Pid impossiblePid = 0x7fff'ffff;

/// Waits until `condition` holds, for at most `timeout`; whether it came to hold.
bool eventually(const std::function<bool()> &condition,
                std::chrono::milliseconds timeout = std::chrono::seconds(30));

/// A process `pid` exists and is no zombie.
[[nodiscard]] bool isAlive(Pid pid);

/// Kills process `pid` if `mark` still stands in its command line, so that no other process is ever hit.
void killMarked(Pid pid, std::string_view mark);

/// Waits until the file at `path` holds a whole line and returns the number in it; -1 when none comes.
[[nodiscard]] Pid awaitPid(const std::string &path);

} // namespace tarnvale
