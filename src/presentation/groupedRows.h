#pragma once

#include "presentation/PortGroup.h"
#include "presentation/Shared.h"
#include "presentation/matchesQuery.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnvale {

/// A port and the section that it belongs to.
struct GroupedPort {
    Shared<ListeningPort> port;
    PortGroup group = PortGroup::other;
};

/// One process in one section.
struct RowEntry {
    Shared<ListeningPort> port;           ///< its first port there, the row's face
    std::vector<std::int64_t> otherPorts; ///< its further port numbers there, in list order
    bool isWeb = false;                   ///< the row stands in the web section

    /// The face's `ListeningPort::id()`.
    [[nodiscard]] std::string id() const { return port->id(); }

    bool operator==(const RowEntry &) const = default;
};

/// A section with its rows, of which it has at least one.
struct RowSection {
    PortGroup group = PortGroup::other;
    std::vector<RowEntry> rows;

    bool operator==(const RowSection &) const = default;
};

/// `ports` as sections in the order of `portGroups`, empty ones left out. Rows stand where their first port
/// stood; ports of one pid in one section share a row.
[[nodiscard]] std::vector<RowSection> groupedRows(const std::vector<ListeningPort> &ports,
                                                  const WebTest &isWeb);

/// Each port with its section. That takes longer than the rest, and whoever searches the same ports again and
/// again has it done once.
[[nodiscard]] std::vector<GroupedPort> groupedPorts(std::vector<ListeningPort> ports, const WebTest &isWeb);

/// The sections of those of `ports` that are wanted.
[[nodiscard]] std::vector<RowSection> groupedRows(const std::vector<GroupedPort> &ports,
                                                  const PortTest &isWanted);

} // namespace tarnvale
