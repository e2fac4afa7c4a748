#pragma once

#include "presentation/palette/PaletteItem.h"

#include <vector>

namespace tarnvale {

/// Where the items lie in `items` that `query` finds, in their order: those whose title and subtitle hold
/// each of its words somewhere, in any order and case. A query without words finds the first 60.
[[nodiscard]] std::vector<std::size_t> filteredItems(const std::vector<PaletteItem> &items,
                                                     const QString &query);

} // namespace tarnvale
