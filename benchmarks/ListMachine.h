#pragma once

#include "discovery/Machine.h"

#include <string>
#include <vector>

namespace tarnvale {

/// A machine of servers that exist only in a list, each in a project folder of its own.
class ListMachine : public Machine {
public:
    explicit ListMachine(int count) {
        for (int i = 0; i < count; ++i)
            m_ports.push_back(next());
    }

    /// The `count` oldest servers end, and as many others start on their ports. Not while a scan runs.
    void replace(int count) {
        for (int i = 0; i < count; ++i) {
            ListeningPort &port = m_ports[m_oldest++ % m_ports.size()];
            const std::int64_t number = port.port;
            port = next();
            port.port = number;
            port.command += std::to_string(port.pid); // another server, not the same one again
        }
    }

    std::vector<ListeningPort> listeningSockets() override {
        std::vector<ListeningPort> sockets;
        for (const ListeningPort &port : m_ports)
            sockets.push_back({.pid = port.pid, .command = port.command, .port = port.port});
        return sockets;
    }
    ProcessDetailsMap processDetails(const std::vector<Pid> &) override {
        ProcessDetailsMap details;
        for (const ListeningPort &port : m_ports)
            details[port.pid] = {
                .ppid = 1, .args = *port.args, .memoryKB = 4096, .startedAt = port.startedAt};
        return details;
    }
    ProcessDetailsMap currentDetails(const std::vector<Pid> &pids) override { return processDetails(pids); }
    WorkingDirectories workingDirectories(const std::vector<Pid> &) override {
        WorkingDirectories folders;
        for (const ListeningPort &port : m_ports)
            folders[port.pid] = *port.cwd;
        return folders;
    }
    ServiceLabels serviceLabels(const std::vector<Pid> &) override { return {}; }
    ContainerMap containers(const std::vector<ListeningPort> &) override { return {}; }
    ProcessTable processTable(const std::vector<Pid> &) override { return {}; }
    std::optional<std::string> hostApplication(Pid, const ProcessNode &) override { return std::nullopt; }
    std::string ownApplication() override { return {}; }

private:
    ListeningPort next() {
        const std::string number = std::to_string(++m_last);
        return {.pid = m_last,
                .command = "server",
                .port = 10'000 + m_last,
                .cwd = "/home/developer/projects/project-" + number,
                .startedAt = Instant(std::chrono::seconds(1'700'000'000 + m_last)),
                .args = "/usr/bin/server --port " + number + " --config config/development.json"};
    }

    std::vector<ListeningPort> m_ports;
    Pid m_last = 0;
    std::size_t m_oldest = 0;
};

} // namespace tarnvale
