// How a server is brought back.

#include "discovery/ProcessArguments.h"
#include "platform/Clock.h"
#include "platform/ServiceCommands.h"
#include "platform/Tools.h"
#include "platform/background.h"
#include "store/HeldPort.h"
#include "store/holderOf.h"
#include "store/shellQuoted.h"

#include <QCoroFuture>
#include <QPointer>

#include <unistd.h>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

bool canRestart(const ListeningPort &port) {
    return port.containerName() || port.service || (port.hasProject() && port.args);
}

} // namespace

QCoro::Task<> PortStore::restart(ListeningPort port) {
    const QPointer<PortStore> alive(this);
    if (!canRestart(port))
        co_return;
    HeldPort held = hold(port);
    const bool isSame = co_await verifySameProcess(port);
    if (!isSame)
        co_return;
    if (const auto container = port.containerName()) {
        std::vector<std::string> arguments{"restart", *container};
        co_await runDocker(std::move(arguments), 60s);
        if (alive)
            co_await refresh();
    } else if (port.service) {
        co_await restartService(port);
    } else if (port.args && port.cwd) {
        co_await restartProcess(port, std::move(held));
    }
}

QCoro::Task<> PortStore::restartService(ListeningPort port) {
    const QPointer<PortStore> alive(this);
    const ToolRun run = restartServiceRun(*port.service, port.serviceManager, getuid(), systemctl());
    const auto work = [&tools = m_platform.tools, run] { return tools.run(run); };
    const QFuture<std::string> running = inBackground(work);
    co_await running;
    if (alive)
        co_await settleAndRefresh(1500ms);
}

/// Ends the process and launches its very words again, in its folder and with its variables.
QCoro::Task<> PortStore::restartProcess(ListeningPort port, HeldPort held) {
    constexpr int longestWait = 50; // tenths of a second
    const QPointer<PortStore> alive(this);
    // What it was started with goes with it.
    const auto read = [pid = port.pid] { return ProcessArguments::read(pid); };
    const QFuture<std::optional<ProcessArguments::Info>> reading = inBackground(read);
    const auto info = co_await reading;
    if (!alive)
        co_return;
    std::vector<Pid> pids{port.pid};
    const ProcessDetailsMap details = co_await readDetails(std::move(pids));
    if (!alive)
        co_return;
    // Whoever can choose a command line must not choose what this user runs.
    const auto found = details.find(port.pid);
    if (found != details.end() && found->second.isForeign) {
        setError(tr("%1 belongs to another user or to a container and can't be restarted from here.")
                     .arg(QString::fromStdString(port.title())));
        co_return;
    }
    if (!sendTerminate(port, *held.process))
        co_return;
    for (int i = 0; i < longestWait && !held.process->hasEnded(); ++i) {
        const QFuture<void> slept = m_platform.clock.sleep(100ms);
        co_await slept;
        if (!alive)
            co_return;
    }
    if (!held.process->hasEnded()) {
        setError(tr("%1 (PID %2) didn't stop within 5 seconds.")
                     .arg(QString::fromStdString(port.command), QString::number(port.pid)));
        co_return;
    }
    co_await waitForWorker(held.worker);
    if (!alive)
        co_return;
    LaunchOptions options;
    if (info) {
        options.exec = shellQuoted(info->arguments);
        options.environment = info->environment;
    }
    if (launch(*port.args, *port.cwd, options))
        co_await settleAndRefresh(1s);
}

QCoro::Task<> PortStore::relaunch(std::string args, std::string cwd) {
    launch(args, cwd, {});
    co_await settleAndRefresh(1500ms);
}

QCoro::Task<> PortStore::killAndRetry(std::int64_t port, std::string args, std::string cwd) {
    const QPointer<PortStore> alive(this);
    if (const ListeningPort *holder = holderOf(port, m_ports))
        co_await stop(*holder);
    if (!alive)
        co_return;
    if (holderOf(port, m_ports) != nullptr) {
        setError(tr("Port %1 is still in use — %2 wasn't started.")
                     .arg(QString::number(port), QString::fromStdString(args)));
        co_return;
    }
    launch(args, cwd, {});
    co_await settleAndRefresh(1500ms);
}

} // namespace tarnvale
