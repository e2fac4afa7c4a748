#pragma once

#include "discovery/ListeningPort.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// Gathers sockets into records: one for each command and port, under the lowest pid, exposed when any of its
/// sockets is. IPv4 and IPv6 sockets, and the workers of one server, so become one record.
class SocketMerger {
public:
    /// Adds one socket of a process.
    void add(Pid pid, std::string_view command, std::int64_t port, bool isExposed,
             const std::optional<std::string> &service = std::nullopt,
             ServiceManager manager = ServiceManager::launchd);

    /// The records so far, sorted by port, then pid; the merger is empty afterwards.
    [[nodiscard]] std::vector<ListeningPort> take();

private:
    std::unordered_map<std::string, ListeningPort> m_records; ///< by "{command}:{port}"
};

/// Sorts by port, then pid; one process that listens under two names on a port is sorted by name.
void sortByPort(std::vector<ListeningPort> &ports);

} // namespace tarnvale
