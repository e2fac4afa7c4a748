#pragma once

#include "platform/CommandLauncher.h"
#include "platform/loginShell.h"

#include <QDBusConnection>
#include <QObject>

namespace tarnvale {

/// Runs commands in the user's login shell, each in a session of its own, and in a scope of its own where the
/// user has a service manager.
///
/// A command that only a shell can run (see `shellLine`) ends with its shell. A status by which a shell tells
/// that a signal ended the last program is no failure then, as it is none for a plain command.
class ShellLauncher : public CommandLauncher {
public:
    struct Setup {
        std::string logsFolder;
        std::vector<std::string> shells; ///< the user's, best first
        QDBusConnection bus;             ///< where the service manager would be
    };

    explicit ShellLauncher(Setup setup = standardSetup());

    /// Logs in "tarnvale/logs" below XDG_STATE_HOME, the user's own shells, the session bus.
    [[nodiscard]] static Setup standardSetup();

    [[nodiscard]] std::expected<std::shared_ptr<LaunchedCommand>, std::string>
    launch(const LaunchOrder &order, std::function<void()> onFailure) override;

    [[nodiscard]] std::string logsFolder() const override { return m_setup.logsFolder; }

private:
    Setup m_setup;
    QObject m_scopes; ///< those that are being asked for
};

} // namespace tarnvale
