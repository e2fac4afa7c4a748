#pragma once

#include "discovery/ListeningPort.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnvale {

/// The environment variable by which all that came of a test program is known, should it die before it can
/// clean up.
constexpr const char *familyVariable = "TARNVALE_TEST_FAMILY";

/// How a process is started.
struct ProcessSetup {
    std::string folder = {};                     ///< to work in; empty: the test's own
    std::vector<std::string> environment = {};   ///< "KEY=value", beside the test's own
    bool hasOnlyThatEnvironment = false;         ///< the test's own is left out
    std::optional<uid_t> user = {};              ///< to run as, with the group of the same number
    std::vector<std::string> controlGroups = {}; ///< folders of the groups to begin in
};

/// A program, or a fork of the test itself, that runs beside the test. With this object it is ended and
/// reaped, and so is everything that came of it, orphans included.
class RealProcess {
public:
    /// Starts the program at `words[0]`, with no input and its output kept.
    explicit RealProcess(const std::vector<std::string> &words, const ProcessSetup &setup = {});

    /// Runs `body` in a fork, which ends with it.
    explicit RealProcess(const std::function<void()> &body, const ProcessSetup &setup = {});

    RealProcess(const RealProcess &) = delete;
    RealProcess &operator=(const RealProcess &) = delete;
    ~RealProcess() { end(); }

    [[nodiscard]] Pid pid() const { return m_pid; }

    /// What it and its children wrote so far, to either stream.
    [[nodiscard]] std::string output() const;

    void signal(int number) const;

    /// Waits for the process itself to end; whether it did before `timeout` was over.
    bool waitForEnd(std::chrono::milliseconds timeout = std::chrono::seconds(20));

    /// Asks the process to end, kills what doesn't, and reaps it.
    void end();

private:
    void start(const ProcessSetup &setup, const std::function<void()> &body);

    Pid m_pid = -1; ///< -1 once it was reaped
    int m_output = -1;
};

/// The processes that `pid` started, and those that these started, nearest first.
[[nodiscard]] std::vector<Pid> descendantsOf(Pid pid);

/// The processor time that a process has used and how long it has lived, both in seconds, as the kernel
/// counts them at the time of the call.
struct ProcessTimes {
    double used = 0;
    double age = 0;
};
[[nodiscard]] ProcessTimes timesOf(Pid pid);

/// The short name of a process in the process file system.
[[nodiscard]] std::string commandOf(Pid pid);

/// The executable `name` in the folders where systems keep programs; nothing when it isn't installed.
[[nodiscard]] std::optional<std::string> findProgram(const std::string &name);

/// An environment variable that has another value for a while.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string &value);
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;
    ~ScopedVariable();

private:
    std::string m_name;
    std::optional<std::string> m_before;
};

} // namespace tarnvale

/// Puts the path of an installed program into `variable`, or skips the test.
#define TARNVALE_NEEDS_PROGRAM(variable, name)                                                               \
    const std::string variable = ::tarnvale::findProgram(name).value_or("");                                 \
    if (variable.empty())                                                                                    \
    GTEST_SKIP() << name << " is not installed"
