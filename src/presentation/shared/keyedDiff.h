#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace tarnvale {

/// One step on the way from an old list to a new one. Rows are counted in the list as the steps before have
/// left it.
struct ListStep {
    enum class Kind : std::uint8_t { remove, insert, move };

    Kind kind = Kind::remove;
    int row = 0;    ///< what goes or moves; where something comes in
    int source = 0; ///< for an insert: the row of the new list that comes in
    int target = 0; ///< for a move: where it ends up, counted as if it had been taken out first

    bool operator==(const ListStep &) const = default;
};

/// The steps that turn the keys `before` into `after`: removals from the end on, then moves and insertions
/// from the front on. Keys that stay in their order are never touched. Keys should be unique; of two equal
/// ones the second counts as another key.
[[nodiscard]] std::vector<ListStep> keyedDiff(const std::vector<QString> &before,
                                              const std::vector<QString> &after);

} // namespace tarnvale
