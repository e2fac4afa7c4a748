#pragma once

#include "real/RealDesktop.h"
#include "support/TestProcess.h"

#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// The built application on a desktop of the test's own. With this object it is ended.
class RealApplication {
public:
    /// Starts it with these words, and with these variables beside those of the desktop.
    explicit RealApplication(const RealDesktop &desktop, const std::vector<std::string> &words = {},
                             const std::vector<std::string> &variables = {});
    RealApplication(const RealApplication &) = delete;
    RealApplication &operator=(const RealApplication &) = delete;
    ~RealApplication();

    [[nodiscard]] Pid pid() const { return m_process->pid(); }
    [[nodiscard]] bool isRunning() const { return m_process->isRunning(); }

    /// Waits until it has said these words; whether it did. It tells of its hot key last when it starts.
    [[nodiscard]] bool says(const std::string &words) const;

    /// What it has written to its standard error.
    [[nodiscard]] std::string output() const;

    /// Waits for the end; the exit status, minus the signal's number when one ended it, nothing when the end
    /// doesn't come.
    std::optional<int> waitForEnd();
    std::optional<int> end(int signal = SIGTERM);

private:
    TemporaryFolder m_folder;
    std::unique_ptr<TestProcess> m_process;
};

} // namespace tarnvale
