#pragma once

#include "presentation/PortGroup.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnvale {

/// One process in one section.
struct RowEntry {
    ListeningPort port;                   ///< its first port there, the row's face
    std::vector<std::int64_t> otherPorts; ///< its further port numbers there, in list order
    bool isWeb = false;                   ///< the row stands in the web section

    /// The face's `ListeningPort::id()`.
    [[nodiscard]] std::string id() const { return port.id(); }

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

} // namespace tarnvale
