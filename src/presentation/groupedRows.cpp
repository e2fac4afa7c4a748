#include "presentation/groupedRows.h"

#include <unordered_map>
#include <utility>

namespace tarnvale {

namespace {

struct SectionInMaking {
    RowSection section;
    std::unordered_map<Pid, std::size_t> rowOfPid;

    void add(const Shared<ListeningPort> &port) {
        const auto [known, isNew] = rowOfPid.try_emplace(port->pid, section.rows.size());
        if (isNew)
            section.rows.push_back({port, {}, section.group == PortGroup::web});
        else
            section.rows[known->second].otherPorts.push_back(port->port);
    }
};

class SectionsInMaking {
public:
    SectionsInMaking() {
        for (const PortGroup group : portGroups)
            of(group).section.group = group;
    }

    void add(const Shared<ListeningPort> &port, PortGroup group) { of(group).add(port); }

    std::vector<RowSection> take() {
        std::vector<RowSection> result;
        for (SectionInMaking &making : m_sections)
            if (!making.section.rows.empty())
                result.push_back(std::move(making.section));
        return result;
    }

private:
    SectionInMaking &of(PortGroup group) { return m_sections[static_cast<std::size_t>(group)]; }

    std::array<SectionInMaking, portGroups.size()> m_sections;
};

} // namespace

std::vector<RowSection> groupedRows(const std::vector<ListeningPort> &ports, const WebTest &isWeb) {
    SectionsInMaking sections;
    for (const ListeningPort &port : ports)
        sections.add(port, portGroup(port, isWeb));
    return sections.take();
}

std::vector<GroupedPort> groupedPorts(std::vector<ListeningPort> ports, const WebTest &isWeb) {
    std::vector<GroupedPort> result;
    result.reserve(ports.size());
    for (ListeningPort &port : ports) {
        const PortGroup group = portGroup(port, isWeb);
        result.push_back({std::move(port), group});
    }
    return result;
}

std::vector<RowSection> groupedRows(const std::vector<GroupedPort> &ports, const PortTest &isWanted) {
    SectionsInMaking sections;
    for (const GroupedPort &each : ports)
        if (isWanted(*each.port))
            sections.add(each.port, each.group);
    return sections.take();
}

} // namespace tarnvale
