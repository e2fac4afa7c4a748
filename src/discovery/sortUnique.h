#pragma once

#include <algorithm>
#include <vector>

namespace tarnvale {

/// Sorts `values` and drops repeated ones.
template<typename Value> void sortUnique(std::vector<Value> &values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

} // namespace tarnvale
