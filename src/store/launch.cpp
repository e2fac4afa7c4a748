// Commands that are started here, alone or as a stack.

#include "discovery/text.h"
#include "platform/CommandLauncher.h"
#include "store/PortStore.h"
#include "store/classifyFailure.h"
#include "store/holderOf.h"
#include "store/launchLog.h"
#include "store/trimmedBlanks.h"

#include <QPointer>

namespace tarnvale {

using namespace std::chrono_literals;

bool PortStore::launch(const std::string &args, const std::string &cwd, const LaunchOptions &options) {
    requestNotificationAuthorization();
    std::erase_if(m_launched, [](const auto &command) { return !command->isRunning(); });
    CommandLauncher &launcher = m_platform.launcher;
    const LaunchOrder order{.command = options.exec.value_or(args),
                            .folder = cwd,
                            .log = launchLogURL(launcher.logsFolder(), args, cwd),
                            .environment = options.environment};
    const auto onFailure = [alive = QPointer<PortStore>(this), args, cwd] {
        if (alive)
            alive->handleLaunchFailure(args, cwd);
    };
    const auto launched = launcher.launch(order, onFailure);
    if (launched) {
        m_launched.push_back(*launched);
        setError(std::nullopt);
    } else {
        setError(tr("Couldn't start %1: %2")
                     .arg(QString::fromStdString(args), QString::fromStdString(launched.error())));
    }
    return launched.has_value();
}

void PortStore::handleLaunchFailure(const std::string &args, const std::string &cwd) {
    constexpr std::size_t tailBytes = 8192;
    const QString name = QString::fromStdString(std::string(lastPathComponent(cwd)));
    const LaunchFailure failure =
        classifyFailure(readLogTail(launchLogURL(m_platform.launcher.logsFolder(), args, cwd), tailBytes));
    if (!failure.isConflict) {
        const std::string &line = failure.line.empty() ? args : failure.line;
        postNotification(tr("%1: command failed").arg(name), QString::fromStdString(line));
        return;
    }
    const QString title = tr("Port conflict in %1").arg(name);
    if (!failure.port) {
        postNotification(title,
                         tr("%1 couldn't start: address already in use.").arg(QString::fromStdString(args)));
        return;
    }
    const QString port = QString::number(*failure.port);
    const NotificationPayload payload{.port = failure.port, .args = args, .cwd = cwd, .url = {}};
    const ListeningPort *holder = holderOf(*failure.port, m_ports);
    if (holder == nullptr) {
        postNotification(title, tr("Port %1 is already in use.").arg(port), {}, payload);
        return;
    }
    const auto project = holder->projectName();
    const QString who = project ? QString::fromStdString(*project) : tr("PID %1").arg(holder->pid);
    postNotification(
        title,
        tr("Port %1 is already in use by %2 (%3).").arg(port, QString::fromStdString(holder->command), who),
        "portConflict", payload);
}

QCoro::Task<> PortStore::startStack(Stack stack) {
    const auto running = runningCommands(m_ports);
    for (const Stack::Command &command : stack.commands)
        if (!running.contains(command))
            launch(command.args, command.cwd, {});
    co_await settleAndRefresh(1500ms);
}

void PortStore::saveStack(const std::string &name, std::vector<Stack::Command> commands) {
    if (commands.empty())
        return;
    const std::string trimmed = trimmedBlanks(name);
    const std::string given =
        trimmed.empty() ? std::string(lastPathComponent(commands.front().cwd)) : trimmed;
    auto stacks = m_stacks;
    putStack(stacks, given, std::move(commands));
    setStacks(std::move(stacks));
}

void PortStore::saveStack(const ListeningPort &port) {
    auto commands = commandsBeside(port, m_ports);
    if (commands.empty())
        return;
    auto stacks = m_stacks;
    putStack(stacks, port.projectName().value_or(port.command), std::move(commands));
    setStacks(std::move(stacks));
}

void PortStore::deleteStack(const QUuid &id) {
    auto stacks = m_stacks;
    std::erase_if(stacks, [&](const Stack &stack) { return stack.id == id; });
    setStacks(std::move(stacks));
}

} // namespace tarnvale
