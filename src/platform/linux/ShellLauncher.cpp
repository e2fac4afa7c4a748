#include "platform/linux/ShellLauncher.h"

#include "discovery/findTool.h"
#include "discovery/text.h"
#include "platform/errorText.h"
#include "platform/linux/LaunchScope.h"
#include "platform/linux/SpawnedProcess.h"
#include "platform/openEmptied.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvale {

namespace {

class ShellCommand : public LaunchedCommand {
public:
    explicit ShellCommand(std::unique_ptr<SpawnedProcess> process) : m_process(std::move(process)) {}

    [[nodiscard]] Pid pid() const override { return m_process->pid(); }
    [[nodiscard]] bool isRunning() const override { return m_process->isRunning(); }

private:
    std::unique_ptr<SpawnedProcess> m_process;
};

/// A folder to work in. The error is an `errno`.
std::expected<FileDescriptor, int> openFolder(const std::string &path) {
    FileDescriptor folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen() || access(path.c_str(), X_OK) != 0)
        return std::unexpected(errno);
    return folder;
}

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

std::expected<Pipe, int> makePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return std::unexpected(errno);
    return Pipe{.readEnd = FileDescriptor(ends[0]), .writeEnd = FileDescriptor(ends[1])};
}

using Environment = std::map<std::string, std::string>;

/// Without what a shell sets for itself.
std::optional<Environment> environmentFor(std::optional<Environment> environment) {
    if (environment)
        for (const char *key : {"_", "PWD", "OLDPWD", "SHLVL", "PS1"})
            environment->erase(key);
    return environment;
}

/// The words behind "/bin/sh" that wait for the end of the input and become `shell` then, with no input.
std::vector<std::string> waitingFor(const LoginShell &shell, const ShellLine &line) {
    // A program of the desktop has no TERM, and fish warns of that in the log.
    const std::string terminal = shell.kind == ShellKind::fish ? "export TERM=\"${TERM:-dumb}\"; " : "";
    std::vector<std::string> words{"-c", terminal + "read -r _; exec \"$@\" </dev/null", "sh", shell.path};
    const std::string name(lastPathComponent(shell.path));
    for (std::string &word : shellArguments(line, shell.kind, name))
        words.push_back(std::move(word));
    return words;
}

bool isFailure(int status, const ShellLine &line) {
    constexpr int behindSignals = 128; // a shell's status for "ended by signal n" is 128 + n
    constexpr int lastSignal = 64;
    if (!WIFEXITED(status))
        return false;
    const int code = WEXITSTATUS(status);
    const bool isSignal = code > behindSignals && code <= behindSignals + lastSignal;
    return code != 0 && (line.replacesShell || !isSignal);
}

} // namespace

ShellLauncher::ShellLauncher(Setup setup) : m_setup(std::move(setup)) {}

ShellLauncher::Setup ShellLauncher::standardSetup() {
    const char *state = std::getenv("XDG_STATE_HOME");
    const std::string base =
        state != nullptr && *state == '/' ? std::string(state) : homeFolder() + "/.local/state";
    return {
        .logsFolder = base + "/tarnvale/logs", .shells = userShells(), .bus = QDBusConnection::sessionBus()};
}

std::expected<std::shared_ptr<LaunchedCommand>, std::string>
ShellLauncher::launch(const LaunchOrder &order, std::function<void()> onFailure) {
    const auto log = openEmptied(order.log);
    if (!log)
        return std::unexpected(errorText(order.log, log.error()));
    const auto folder = openFolder(order.folder);
    if (!folder)
        return std::unexpected(errorText(order.folder, folder.error()));
    auto gate = makePipe();
    if (!gate)
        return std::unexpected(errorText(gate.error()));

    const LoginShell shell = loginShell(m_setup.shells);
    const ShellLine line = shellLine(order.command, shell.kind);
    const int output = log->get();
    auto process = SpawnedProcess::start({.path = "/bin/sh",
                                          .arguments = waitingFor(shell, line),
                                          .descriptors = {{STDIN_FILENO, gate->readEnd.get()},
                                                          {STDOUT_FILENO, output},
                                                          {logDescriptor(shell.kind), output}},
                                          .folder = folder->get(),
                                          .environment = environmentFor(order.environment),
                                          .newSession = true},
                                         [line, onFailure = std::move(onFailure)](int status) {
                                             if (isFailure(status, line))
                                                 onFailure();
                                         });
    if (!process)
        return std::unexpected(errorText(process.error()));
    if (m_setup.bus.isConnected())
        new LaunchScope(m_setup.bus,
                        {.pid = (*process)->pid(),
                         .description = "Launched by Tarnvale: " + order.command,
                         .gate = std::move(gate->writeEnd)},
                        &m_scopes);
    return std::make_shared<ShellCommand>(std::move(*process));
}

} // namespace tarnvale
