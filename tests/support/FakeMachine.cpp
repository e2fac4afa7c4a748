#include "support/FakeMachine.h"

#include "discovery/SocketMerger.h"
#include "discovery/StockToolsMachine.h"
#include "discovery/text.h"

#include <algorithm>
#include <utility>

namespace tarnvale {

void FakeMachine::add(FakeProcess process) {
    const std::lock_guard lock(m_mutex);
    if (!process.startedAt)
        process.startedAt = m_now;
    const Pid pid = process.pid;
    processes.insert_or_assign(pid, std::move(process));
}

void FakeMachine::listen(Pid pid, std::int64_t port, bool isExposed) {
    const std::lock_guard lock(m_mutex);
    sockets.push_back({.pid = pid, .port = port, .isExposed = isExposed, .command = std::nullopt});
}

void FakeMachine::end(Pid pid) {
    const std::lock_guard lock(m_mutex);
    processes.erase(pid);
    std::erase_if(sockets, [pid](const FakeSocket &socket) { return socket.pid == pid; });
}

std::optional<Instant> FakeMachine::startOf(Pid pid) const {
    const std::lock_guard lock(m_mutex);
    const auto process = processes.find(pid);
    return process == processes.end() ? std::nullopt : process->second.startedAt;
}

void FakeMachine::tick(std::chrono::milliseconds time) {
    const std::lock_guard lock(m_mutex);
    m_now += time;
}

std::vector<std::string> FakeMachine::questions() const {
    const std::lock_guard lock(m_mutex);
    return m_questions;
}

void FakeMachine::forgetQuestions() {
    const std::lock_guard lock(m_mutex);
    m_questions.clear();
}

void FakeMachine::record(std::string_view question, std::vector<std::int64_t> numbers) {
    std::sort(numbers.begin(), numbers.end());
    std::string text(question);
    for (const std::int64_t number : numbers)
        text += " " + std::to_string(number);
    m_questions.push_back(std::move(text));
}

std::vector<ListeningPort> FakeMachine::listeningSockets() {
    const std::lock_guard lock(m_mutex);
    record("listeningSockets");
    SocketMerger merger;
    for (const FakeSocket &socket : sockets) {
        const auto process = processes.find(socket.pid);
        const std::string_view file =
            process == processes.end() ? std::string_view() : lastPathComponent(process->second.path);
        merger.add(socket.pid, socket.command ? std::string_view(*socket.command) : file, socket.port,
                   socket.isExposed);
    }
    return merger.take();
}

ProcessDetailsMap FakeMachine::detailsOf(const std::vector<Pid> &pids) const {
    ProcessDetailsMap result;
    for (const Pid pid : pids) {
        const auto process = processes.find(pid);
        if (process == processes.end() || !process->second.isReadable)
            continue;
        const Instant start = process->second.startedAt.value_or(m_now);
        result[pid] = {.ppid = process->second.ppid,
                       .uptime = std::chrono::duration<double>(m_now - start).count(),
                       .args = process->second.args,
                       .cpu = process->second.cpu,
                       .memoryKB = process->second.memoryKB,
                       .startedAt = tellsStart ? std::optional(start) : std::nullopt};
    }
    return result;
}

ProcessDetailsMap FakeMachine::processDetails(const std::vector<Pid> &pids) {
    const std::lock_guard lock(m_mutex);
    record("processDetails", {pids.begin(), pids.end()});
    return detailsOf(pids);
}

ProcessDetailsMap FakeMachine::currentDetails(const std::vector<Pid> &pids) {
    beforeCurrentDetails();
    const std::lock_guard lock(m_mutex);
    record("currentDetails", {pids.begin(), pids.end()});
    ProcessDetailsMap details = detailsOf(pids);
    for (auto &[pid, process] : details)
        process.isForeign = processes.at(pid).isForeign;
    return details;
}

WorkingDirectories FakeMachine::workingDirectories(const std::vector<Pid> &pids) {
    const std::lock_guard lock(m_mutex);
    record("workingDirectories", {pids.begin(), pids.end()});
    WorkingDirectories result;
    for (const Pid pid : pids) {
        const auto process = processes.find(pid);
        if (process != processes.end() && process->second.isReadable && process->second.cwd)
            result[pid] = *process->second.cwd;
    }
    return result;
}

ServiceLabels FakeMachine::serviceLabels(const std::vector<Pid> &pids) {
    const std::lock_guard lock(m_mutex);
    record("serviceLabels", {pids.begin(), pids.end()});
    return services;
}

ContainerMap FakeMachine::containers(const std::vector<ListeningPort> &proxies) {
    const std::lock_guard lock(m_mutex);
    std::vector<std::int64_t> ports;
    for (const ListeningPort &proxy : proxies)
        ports.push_back(proxy.port);
    record("containers", std::move(ports));
    return publishedPorts;
}

ProcessTable FakeMachine::processTable(const std::vector<Pid> &pids) {
    const std::lock_guard lock(m_mutex);
    record("processTable", {pids.begin(), pids.end()});
    ProcessTable table;
    if (hasProcessTable)
        for (const auto &[pid, process] : processes)
            table[pid] = {process.ppid, process.path};
    return table;
}

std::optional<std::string> FakeMachine::hostApplication(Pid pid, const ProcessNode &node) {
    const std::lock_guard lock(m_mutex);
    record("hostApplication", {pid});
    const auto process = processes.find(pid);
    if (process != processes.end() && process->second.application)
        return process->second.application;
    return appBundle(node.path);
}

std::string FakeMachine::ownApplication() {
    const std::lock_guard lock(m_mutex);
    record("ownApplication");
    return application;
}

Instant FakeMachine::now() {
    const std::lock_guard lock(m_mutex);
    record("now");
    return m_now;
}

} // namespace tarnvale
