#include "store/PortEvent.h"

#include "discovery/isDevPort.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace tarnvale {

namespace {

using Ports = std::set<std::int64_t>;

/// The identity of a server in the log. It has no pid, so that a restart between two scans is no event.
using Key = std::pair<std::string, std::int64_t>;

using ByKey = std::map<Key, const ListeningPort *>;

ByKey devPortsByKey(const std::vector<ListeningPort> &ports) {
    ByKey map;
    for (const ListeningPort &port : ports)
        if (isDevPort(port))
            map.emplace(Key(port.command, port.port), &port); // the first of a key stays
    return map;
}

/// The elements of `some` that `others` lacks, by process, each process's in the order of the scan.
std::map<Pid, std::vector<const ListeningPort *>> onlyIn(const ByKey &some, const ByKey &others) {
    std::vector<const ListeningPort *> found;
    for (const auto &[key, port] : some)
        if (!others.contains(key))
            found.push_back(port);
    std::sort(found.begin(), found.end()); // all point into one list
    std::map<Pid, std::vector<const ListeningPort *>> byProcess;
    for (const ListeningPort *port : found)
        byProcess[port->pid].push_back(port);
    return byProcess;
}

void setPorts(PortEvent &event, const Ports &ports) {
    event.port = *ports.begin();
    event.otherPorts.emplace(std::next(ports.begin()), ports.end());
}

Ports portsOf(const PortEvent &event) {
    Ports ports{event.port};
    if (event.otherPorts)
        ports.insert(event.otherPorts->begin(), event.otherPorts->end());
    return ports;
}

void appendEvents(std::vector<PortEvent> &events, const ByKey &some, const ByKey &others, bool started,
                  Instant now) {
    for (const auto &[pid, members] : onlyIn(some, others)) {
        Ports ports;
        for (const ListeningPort *port : members)
            ports.insert(port->port);
        PortEvent event{.id = QUuid::createUuid(),
                        .date = now,
                        .otherPorts = {},
                        .pid = pid,
                        .name = members.front()->title(),
                        .started = started};
        setPorts(event, ports);
        events.push_back(std::move(event));
    }
}

/// Adds the ports of `event` to a recent record of the same process and direction: a server that opens its
/// ports in stages is told once. Whether there was such a record.
bool mergeIntoRecent(std::vector<PortEvent> &events, const PortEvent &event, Instant now) {
    constexpr auto recent = std::chrono::seconds(60);
    const auto found = std::find_if(events.begin(), events.end(), [&](const PortEvent &old) {
        return old.pid == event.pid && old.started == event.started && now - old.date < recent;
    });
    if (found == events.end())
        return false;
    Ports ports = portsOf(*found);
    ports.merge(portsOf(event));
    setPorts(*found, ports);
    return true;
}

} // namespace

std::optional<std::vector<PortEvent>> withChanges(std::vector<PortEvent> events,
                                                  const std::vector<ListeningPort> &previous,
                                                  const std::vector<ListeningPort> &ports, Instant now) {
    const ByKey before = devPortsByKey(previous);
    const ByKey after = devPortsByKey(ports);
    std::vector<PortEvent> fresh;
    appendEvents(fresh, after, before, true, now);
    appendEvents(fresh, before, after, false, now);
    if (fresh.empty())
        return std::nullopt;
    std::erase_if(fresh, [&](const PortEvent &event) { return mergeIntoRecent(events, event, now); });
    std::stable_sort(fresh.begin(), fresh.end(),
                     [](const PortEvent &a, const PortEvent &b) { return a.port < b.port; });
    std::move(events.begin(), events.end(), std::back_inserter(fresh));
    if (fresh.size() > mostEvents)
        fresh.erase(fresh.begin() + mostEvents, fresh.end());
    return fresh;
}

} // namespace tarnvale
