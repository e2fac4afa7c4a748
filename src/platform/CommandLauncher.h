#pragma once

#include "discovery/ListeningPort.h"

#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tarnvale {

/// A command that the user wants run.
struct LaunchOrder {
    std::string command; ///< shell text
    std::string folder;  ///< to work in
    std::string log;     ///< the path of the file for both output streams; emptied first
    std::optional<std::map<std::string, std::string>> environment = {}; ///< none: this program's own
};

/// A command that was launched. It goes on when this object, or this program, goes.
class LaunchedCommand {
public:
    LaunchedCommand() = default;
    LaunchedCommand(const LaunchedCommand &) = delete;
    LaunchedCommand &operator=(const LaunchedCommand &) = delete;
    virtual ~LaunchedCommand() = default;

    [[nodiscard]] virtual Pid pid() const = 0;
    [[nodiscard]] virtual bool isRunning() const = 0;
};

/// Runs commands the way the user's terminal would. Main thread.
class CommandLauncher {
public:
    CommandLauncher() = default;
    CommandLauncher(const CommandLauncher &) = delete;
    CommandLauncher &operator=(const CommandLauncher &) = delete;
    virtual ~CommandLauncher() = default;

    /// Starts the user's interactive login shell, which replaces itself with the command, with no input.
    /// `onFailure` is called on the main thread when it has exited by itself with a status other than 0, as
    /// long as the returned object lives. An error is the reason in words for the user, and nothing runs.
    [[nodiscard]] virtual std::expected<std::shared_ptr<LaunchedCommand>, std::string>
    launch(const LaunchOrder &order, std::function<void()> onFailure) = 0;

    /// The folder of the launch logs.
    [[nodiscard]] virtual std::string logsFolder() const = 0;
};

} // namespace tarnvale
