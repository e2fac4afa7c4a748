#pragma once

#include "presentation/shared/PortRow.h"

#include <QHashFunctions>

#include <string>
#include <unordered_map>

namespace tarnvale {

/// Rows that were worked out before, for a list that is shown again and again with next to no change: at each
/// key of a search, at each scan.
class PortRowCache {
public:
    /// As `portRow`; the row is the last one of its id where nothing that it says has changed.
    [[nodiscard]] Shared<PortRow> row(const RowEntry &entry, PortGroup group, const PortFacts &facts,
                                      Instant now, const ApplicationName &applicationName);

    /// Once a minute, however often it is called: forgets what wasn't asked for in the last two.
    void age(Instant now);

private:
    struct Key {
        Pid pid = 0;
        std::int64_t port = 0;
        PortGroup group = PortGroup::other;

        bool operator==(const Key &) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key &key) const {
            return qHashMulti(0, key.pid, key.port, static_cast<int>(key.group));
        }
    };
    struct Kept {
        RowEntry entry;
        PortFacts facts;
        std::string age; ///< as the row says it
        Shared<PortRow> row;
        unsigned lastUse = 0;
    };

    std::unordered_map<Key, Kept, KeyHash> m_kept;
    unsigned m_round = 0;
    Instant m_agedAt;
};

} // namespace tarnvale
