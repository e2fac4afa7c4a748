#pragma once

#include "updates/UpdateItem.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The newest of `items` that is newer than `current`, and of two that are equally new one made for Linux.
/// Nothing when there is none, and when `current` is empty: who doesn't know its own version can't tell.
[[nodiscard]] std::optional<UpdateItem> newestUpdate(const std::vector<UpdateItem> &items,
                                                     std::string_view current);

} // namespace tarnvale
