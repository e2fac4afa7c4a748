#pragma once

#include "presentation/shared/PortRow.h"

#include <string>
#include <unordered_map>

namespace tarnvale {

/// Rows that were worked out before, for a list that is shown again and again with next to no change: at each
/// key of a search, at each scan.
class PortRowCache {
public:
    /// As `portRow`; the row is the last one of its id where nothing that it says has changed.
    [[nodiscard]] PortRow row(const RowEntry &entry, PortGroup group, const PortFacts &facts, Instant now,
                              const ApplicationName &applicationName);

    /// Once a minute, however often it is called: forgets what wasn't asked for in the last two.
    void age(Instant now);

private:
    struct Kept {
        RowEntry entry;
        PortGroup group = PortGroup::other;
        PortFacts facts;
        std::string age; ///< as the row says it
        PortRow row;
        unsigned lastUse = 0;
    };

    std::unordered_map<std::string, Kept> m_kept; ///< by the entry's id and group
    unsigned m_round = 0;
    Instant m_agedAt;
};

} // namespace tarnvale
