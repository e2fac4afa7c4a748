#include "updates/newestUpdate.h"

#include "updates/compareVersions.h"

namespace tarnvale {

namespace {

bool isBetter(const UpdateItem &item, const UpdateItem &than) {
    const auto order = compareVersions(item.version, than.version);
    return order > 0 || (order == 0 && item.isForLinux && !than.isForLinux);
}

} // namespace

std::optional<UpdateItem> newestUpdate(const std::vector<UpdateItem> &items, std::string_view current) {
    const UpdateItem *best = nullptr;
    for (const UpdateItem &item : items)
        if (!current.empty() && compareVersions(item.version, current) > 0 &&
            (best == nullptr || isBetter(item, *best)))
            best = &item;
    return best == nullptr ? std::nullopt : std::optional(*best);
}

} // namespace tarnvale
