#pragma once

#include "real/ControlGroups.h"
#include "real/RealProcess.h"
#include "support/TemporaryFolder.h"
#include "support/runProgram.h"

#include <list>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A systemd user manager of a test's own, with a session bus. Its control groups lie below one of its own
/// and its units in a folder of its own, so it meets no other manager. Programs that the test starts find it
/// as they would find the user's.
class UserServiceManager {
public:
    UserServiceManager();
    UserServiceManager(const UserServiceManager &) = delete;
    UserServiceManager &operator=(const UserServiceManager &) = delete;
    ~UserServiceManager();

    /// Why this machine can't have one; empty when it runs.
    [[nodiscard]] const std::string &problem() const { return m_problem; }

    [[nodiscard]] Pid pid() const { return m_manager->pid(); }

    /// Starts `words` as the transient service `unit` in `folder`, with further `options` of systemd-run.
    [[nodiscard]] bool run(const std::string &unit, const std::vector<std::string> &words,
                           const std::string &folder, const std::vector<std::string> &options = {});

    /// Runs systemctl for this manager.
    [[nodiscard]] ProgramRun systemctl(const std::vector<std::string> &words) const;

    /// The process that the manager started for `unit`; 0 when there is none.
    [[nodiscard]] Pid mainPid(const std::string &unit) const;

    /// The folder in which the desktop files of this user are looked for.
    [[nodiscard]] std::string applicationFolder() const { return m_folder.path("data/applications"); }

    /// The words that start a program in a scope called `unit`, in the process that runs them.
    [[nodiscard]] std::vector<std::string> scoped(const std::string &unit,
                                                  const std::vector<std::string> &words) const;

private:
    std::string m_problem;
    TemporaryFolder m_folder;
    std::list<ScopedVariable> m_variables;
    bool m_madeMark = false;
    std::optional<ControlGroups> m_groups;
    std::optional<RealProcess> m_bus;
    std::optional<RealProcess> m_manager;
    std::string m_systemctl;
    std::string m_systemdRun;
};

} // namespace tarnvale
