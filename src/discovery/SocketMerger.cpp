#include "discovery/SocketMerger.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tarnvale {

void SocketMerger::add(Pid pid, std::string_view command, std::int64_t port, bool isExposed,
                       const std::optional<std::string> &service, ServiceManager manager) {
    std::string key(command);
    key += ':';
    key += std::to_string(port);
    const auto [entry, isNew] = m_records.try_emplace(std::move(key));
    ListeningPort &record = entry->second;
    if (isNew) {
        record.command = command;
        record.port = port;
    }
    if (isNew || pid < record.pid) {
        record.pid = pid;
        record.service = service;
        record.serviceManager = manager;
    }
    record.isExposed = record.isExposed || isExposed;
}

std::vector<ListeningPort> SocketMerger::take() {
    std::vector<ListeningPort> ports;
    ports.reserve(m_records.size());
    for (auto &[key, record] : m_records)
        ports.push_back(std::move(record));
    m_records.clear();
    sortByPort(ports);
    return ports;
}

void sortByPort(std::vector<ListeningPort> &ports) {
    std::stable_sort(ports.begin(), ports.end(), [](const ListeningPort &a, const ListeningPort &b) {
        return std::tie(a.port, a.pid, a.command) < std::tie(b.port, b.pid, b.command);
    });
}

} // namespace tarnvale
