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
    int row = 0;    ///< the first that goes; the one that moves; where the new list's rows from there come in
    int count = 1;  ///< how many go or come in
    int target = 0; ///< for a move: where it ends up, counted as if it had been taken out first

    bool operator==(const ListStep &) const = default;
};

/// The steps that turn the keys `before` into `after`: removals from the end on, then moves and insertions
/// from the front on. Neighbours go and come in together, since a step costs what shows the list as much as
/// many rows do. Keys that stay in their order are never touched. Keys should be unique; of two equal ones
/// the second counts as another key.
[[nodiscard]] std::vector<ListStep> keyedDiff(const std::vector<QString> &before,
                                              const std::vector<QString> &after);

} // namespace tarnvale
