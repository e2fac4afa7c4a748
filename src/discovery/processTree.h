#pragma once

#include "discovery/ListeningPort.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnvale {

class Machine;

/// A process as the process table tells it.
struct ProcessNode {
    Pid ppid = 0;
    std::string path; ///< the executable's path, or just its name where the system tells no more

    bool operator==(const ProcessNode &) const = default;
};

using ProcessTable = std::unordered_map<Pid, ProcessNode>;

/// The table in the output of `ps -axww -o pid=,ppid=,comm=`; lines without all three columns are skipped.
[[nodiscard]] ProcessTable parseProcessTable(std::string_view text);

/// `pid` and its ancestors, nearest first, as far as `table` knows them: without processes 0 and 1, and at
/// most 64, so that a cycle ends.
[[nodiscard]] std::vector<Pid> ancestorChain(Pid pid, const ProcessTable &table);

/// Sets `agent` and `hostApp` of every port from the processes that started it. The nearest agent and the
/// nearest host application win; proxies and services have no host.
void attributeProcessTree(std::vector<ListeningPort> &ports, Machine &machine);

} // namespace tarnvale
