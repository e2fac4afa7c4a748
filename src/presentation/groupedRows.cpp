#include "presentation/groupedRows.h"

#include <unordered_map>
#include <utility>

namespace tarnvale {

namespace {

struct SectionInMaking {
    RowSection section;
    std::unordered_map<Pid, std::size_t> rowOfPid;

    void add(const ListeningPort &port) {
        const auto [known, isNew] = rowOfPid.try_emplace(port.pid, section.rows.size());
        if (isNew)
            section.rows.push_back({port, {}, section.group == PortGroup::web});
        else
            section.rows[known->second].otherPorts.push_back(port.port);
    }
};

} // namespace

std::vector<RowSection> groupedRows(const std::vector<ListeningPort> &ports, const WebTest &isWeb) {
    std::array<SectionInMaking, portGroups.size()> sections;
    for (const PortGroup group : portGroups)
        sections[static_cast<std::size_t>(group)].section.group = group;
    for (const ListeningPort &port : ports)
        sections[static_cast<std::size_t>(portGroup(port, isWeb))].add(port);
    std::vector<RowSection> result;
    for (SectionInMaking &making : sections)
        if (!making.section.rows.empty())
            result.push_back(std::move(making.section));
    return result;
}

} // namespace tarnvale
