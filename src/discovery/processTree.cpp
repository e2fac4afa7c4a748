#include "discovery/processTree.h"

#include "discovery/Machine.h"
#include "discovery/detectAgent.h"
#include "discovery/sortUnique.h"
#include "discovery/text.h"

#include <algorithm>
#include <optional>

namespace tarnvale {

namespace {

constexpr std::size_t chainLimit = 64;

/// Pid, parent and the rest of a line of the table.
std::optional<std::pair<Pid, ProcessNode>> parseNode(std::string_view line) {
    const auto pid = parseInteger<Pid>(takeWord(line));
    const auto ppid = parseInteger<Pid>(takeWord(line));
    line.remove_prefix(leadingWhitespace(line));
    if (!pid || !ppid || line.empty())
        return std::nullopt;
    return std::pair(*pid, ProcessNode{*ppid, std::string(line)});
}

/// The command lines of those processes in `chains` whose name alone doesn't settle what they are.
ProcessDetailsMap runtimeDetails(const std::vector<std::vector<Pid>> &chains, const ProcessTable &table,
                                 Machine &machine) {
    std::vector<Pid> runtimes;
    for (const auto &chain : chains)
        for (const Pid pid : chain)
            if (isNodeLike(table.at(pid).path))
                runtimes.push_back(pid);
    sortUnique(runtimes);
    return runtimes.empty() ? ProcessDetailsMap{} : machine.processDetails(runtimes);
}

/// Answers who started a port. Each process is judged once, however many ports it stands above.
class OriginFinder {
public:
    OriginFinder(const ProcessTable &table, const ProcessDetailsMap &details, Machine &machine)
        : m_table(table), m_details(details), m_machine(machine) {}

    /// The nearest agent in the chain.
    std::optional<std::string> agent(const std::vector<Pid> &chain) {
        for (const Pid pid : chain)
            if (const auto &name = agentOf(pid))
                return name;
        return std::nullopt;
    }

    /// The nearest host application above the process itself; nothing when that is this program. An agent is
    /// never a host.
    std::optional<std::string> host(const std::vector<Pid> &chain) {
        for (std::size_t position = 1; position < chain.size(); ++position)
            if (!agentOf(chain[position]))
                if (const auto &application = hostOf(chain[position]))
                    return isOwn(*application) ? std::nullopt : application;
        return std::nullopt;
    }

private:
    using Answers = std::unordered_map<Pid, std::optional<std::string>>;

    const std::optional<std::string> &agentOf(Pid pid) {
        const auto [answer, isNew] = m_agents.try_emplace(pid);
        if (isNew) {
            const auto details = m_details.find(pid);
            answer->second =
                detectAgent(m_table.at(pid).path,
                            details == m_details.end() ? std::nullopt : std::optional(details->second.args));
        }
        return answer->second;
    }

    const std::optional<std::string> &hostOf(Pid pid) {
        const auto [answer, isNew] = m_hosts.try_emplace(pid);
        if (isNew)
            answer->second = m_machine.hostApplication(pid, m_table.at(pid));
        return answer->second;
    }

    bool isOwn(const std::string &application) {
        if (!m_ownApplication)
            m_ownApplication = m_machine.ownApplication();
        return application == *m_ownApplication;
    }

    const ProcessTable &m_table;
    const ProcessDetailsMap &m_details;
    Machine &m_machine;
    Answers m_agents;
    Answers m_hosts;
    std::optional<std::string> m_ownApplication;
};

} // namespace

// Sample row: "  501     1 /Applications/Terminal.app/Contents/MacOS/Terminal"
ProcessTable parseProcessTable(std::string_view text) {
    ProcessTable table;
    for (const std::string_view line : nonEmptyLines(text))
        if (auto entry = parseNode(line))
            table[entry->first] = std::move(entry->second);
    return table;
}

std::vector<Pid> ancestorChain(Pid pid, const ProcessTable &table) {
    std::vector<Pid> chain;
    while (pid >= 2 && chain.size() < chainLimit) {
        const auto node = table.find(pid);
        if (node == table.end())
            break;
        chain.push_back(pid);
        pid = node->second.ppid;
    }
    return chain;
}

void attributeProcessTree(std::vector<ListeningPort> &ports, Machine &machine) {
    const ProcessTable table = machine.processTable(pidsOf(ports));

    std::vector<std::vector<Pid>> chains;
    chains.reserve(ports.size());
    for (const ListeningPort &port : ports)
        chains.push_back(ancestorChain(port.pid, table));
    const ProcessDetailsMap details = runtimeDetails(chains, table, machine);

    OriginFinder origins(table, details, machine);
    for (std::size_t i = 0; i < ports.size(); ++i) {
        ListeningPort &port = ports[i];
        port.agent = origins.agent(chains[i]);
        if (port.isDockerProxy() || port.service)
            continue;
        port.hostApp = origins.host(chains[i]);
    }
}

} // namespace tarnvale
