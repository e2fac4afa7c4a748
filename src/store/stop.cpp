// How what listens on a port is ended, by kind.

#include "discovery/Machine.h"
#include "discovery/naming.h"
#include "discovery/text.h"
#include "platform/Clock.h"
#include "platform/ServiceCommands.h"
#include "platform/Tools.h"
#include "platform/background.h"
#include "platform/errorText.h"
#include "store/HeldPort.h"

#include <QCoroFuture>
#include <QPointer>
#include <QStringList>

#include <cerrno>
#include <csignal>
#include <set>
#include <unistd.h>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

QString text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

/// What a mass stop may touch, wherever it is shown. Noise isn't spared: who looks at it may stop it.
bool isStoppedWithOthers(const ListeningPort &port) {
    return !port.container && !port.service && !port.isDockerProxy() && port.pid != getpid() &&
           (isKnownServiceCommand(port.command) || (port.cwd && *port.cwd != "/"));
}

/// The ports of a mass stop, each process by its first one.
std::vector<ListeningPort> stoppedTogether(const std::vector<ListeningPort> &ports) {
    std::vector<ListeningPort> kept;
    std::set<Pid> seen;
    for (const ListeningPort &port : ports)
        if (isStoppedWithOthers(port) && seen.insert(port.pid).second)
            kept.push_back(port);
    return kept;
}

} // namespace

PortStore::HeldPort PortStore::hold(const ListeningPort &port) const {
    HeldPort held{.process = m_platform.processes.hold(port.pid), .worker = nullptr};
    if (port.workerPID)
        held.worker = m_platform.processes.hold(*port.workerPID);
    return held;
}

QCoro::Task<> PortStore::stop(ListeningPort port) {
    const QPointer<PortStore> alive(this);
    const HeldPort held = hold(port);
    const bool isSame = co_await verifySameProcess(port);
    if (!isSame)
        co_return;
    if (const auto container = port.containerName()) {
        std::vector<std::string> arguments{"stop", *container};
        co_await runDocker(std::move(arguments), 30s);
    } else if (port.service) {
        co_await stopService(port);
    } else if (sendTerminate(port, *held.process)) {
        co_await waitForWorker(held.worker);
    } else {
        co_return;
    }
    if (alive)
        co_await settleAndRefresh(500ms);
}

QCoro::Task<> PortStore::stopVisible(std::vector<ListeningPort> ports) {
    const QPointer<PortStore> alive(this);
    QStringList failed;
    for (const ListeningPort &port : stoppedTogether(ports)) {
        const HeldPort held = hold(port);
        const bool isSame = co_await verifySameProcess(port);
        if (!alive)
            co_return;
        if (isSame && sendTerminate(port, *held.process))
            co_await waitForWorker(held.worker);
        else
            failed.append(text(port.title()));
        if (!alive)
            co_return;
    }
    co_await settleAndRefresh(500ms);
    if (alive && !failed.isEmpty())
        setError(tr("Couldn't stop %1.").arg(failed.join(QStringLiteral(", "))));
}

/// The processes as they are at this moment.
QCoro::Task<ProcessDetailsMap> PortStore::readDetails(std::vector<Pid> pids) {
    const QPointer<PortStore> alive(this);
    const auto read = [&machine = m_platform.machine, pids] { return machine.currentDetails(pids); };
    const QFuture<ProcessDetailsMap> reading = m_scanner.run(read);
    ++m_questions;
    ProcessDetailsMap details = co_await reading;
    if (alive)
        --m_questions;
    co_return details;
}

/// Whether the record's process is still that process. False, too, when the store has gone.
QCoro::Task<bool> PortStore::verifySameProcess(ListeningPort port) {
    const QPointer<PortStore> alive(this);
    const QString pid = QString::number(port.pid);
    const QString title = text(port.title());
    if (!port.startedAt || !port.args) {
        setError(tr("Couldn't verify PID %1 is still %2 — nothing was stopped.").arg(pid, title));
        co_return false;
    }
    std::vector<Pid> pids{port.pid};
    const ProcessDetailsMap details = co_await readDetails(std::move(pids));
    if (!alive)
        co_return false;
    const auto found = details.find(port.pid);
    if (found != details.end() && isSameProcess(port, found->second, m_platform.clock.now()))
        co_return true;
    setError(found == details.end()
                 ? tr("%1 already exited.").arg(title)
                 : tr("PID %1 now belongs to a different process — nothing was stopped.").arg(pid));
    co_await refresh();
    co_return false;
}

/// Asks the process to end; whether the signal was delivered.
bool PortStore::sendTerminate(const ListeningPort &port, HeldProcess &process) {
    const int problem = process.signal(SIGTERM);
    const QString command = text(port.command);
    if (problem == 0)
        setError(std::nullopt);
    else if (problem == EPERM)
        setError(tr("No permission to stop %1 (PID %2).").arg(command, QString::number(port.pid)));
    else
        setError(tr("Couldn't stop %1: %2.").arg(command, text(errorText(problem))));
    return problem == 0;
}

/// Waits for a worker to end after its parent; half-way it is asked to.
QCoro::Task<> PortStore::waitForWorker(std::shared_ptr<HeldProcess> worker) {
    constexpr int steps = 40;
    const QPointer<PortStore> alive(this);
    for (int i = 0; worker && i < steps && !worker->hasEnded(); ++i) {
        if (i == steps / 2)
            static_cast<void>(worker->signal(SIGTERM));
        const QFuture<void> slept = m_platform.clock.sleep(100ms);
        co_await slept;
        if (!alive)
            co_return;
    }
}

QCoro::Task<> PortStore::runDocker(std::vector<std::string> arguments, std::chrono::milliseconds timeout) {
    const QPointer<PortStore> alive(this);
    const auto docker = m_platform.tools.find("docker");
    if (!docker) {
        setError(tr("Couldn't find the docker command."));
        co_return;
    }
    const auto work = [&tools = m_platform.tools, docker, arguments, timeout] {
        return tools.run({.path = *docker, .arguments = arguments, .mergesError = true, .timeout = timeout});
    };
    const QFuture<std::string> running = inBackground(work);
    const std::string output = co_await running;
    if (!alive || output.empty())
        co_return;
    const auto lines = nonEmptyLines(output);
    if (lines.size() == 1 && lines.front() == arguments.back()) // the name, on success
        setError(std::nullopt);
    else
        setError(QStringLiteral("docker %1: %2").arg(text(arguments.front()), text(output).trimmed()));
}

std::string PortStore::systemctl() const {
    return m_platform.tools.find("systemctl").value_or("/usr/bin/systemctl");
}

QCoro::Task<> PortStore::stopService(ListeningPort port) {
    const QPointer<PortStore> alive(this);
    const auto formula = port.brewService();
    const auto brew = formula ? m_platform.tools.find("brew") : std::nullopt;
    const ToolRun run =
        brew ? ToolRun{.path = *brew, .arguments = {"services", "stop", *formula}, .timeout = 30s}
             : stopServiceRun(*port.service, port.serviceManager, getuid(), systemctl());
    const auto work = [&tools = m_platform.tools, run] { return tools.run(run); };
    const QFuture<std::string> running = inBackground(work);
    co_await running;
    if (alive)
        setError(std::nullopt);
}

} // namespace tarnvale
