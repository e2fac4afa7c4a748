#include "presentation/shared/keyedDiff.h"

#include <QHash>

#include <algorithm>
#include <set>

namespace tarnvale {

namespace {

using Key = std::pair<QString, int>; // the text, and how many of it came before

std::vector<Key> numbered(const std::vector<QString> &keys) {
    QHash<QString, int> seen;
    std::vector<Key> result;
    result.reserve(keys.size());
    for (const QString &key : keys)
        result.emplace_back(key, seen[key]++);
    return result;
}

void removeTheGone(std::vector<Key> &list, const std::set<Key> &wanted, std::vector<ListStep> &steps) {
    for (std::size_t row = list.size(); row-- > 0;) {
        if (wanted.contains(list[row]))
            continue;
        steps.push_back({.kind = ListStep::Kind::remove, .row = static_cast<int>(row)});
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(row));
    }
}

} // namespace

std::vector<ListStep> keyedDiff(const std::vector<QString> &before, const std::vector<QString> &after) {
    std::vector<Key> list = numbered(before);
    const std::vector<Key> target = numbered(after);
    std::vector<ListStep> steps;
    removeTheGone(list, {target.begin(), target.end()}, steps);
    std::set<Key> kept(list.begin(), list.end());
    for (std::size_t row = 0; row < target.size(); ++row) {
        if (row < list.size() && list[row] == target[row])
            continue;
        const auto place = list.begin() + static_cast<std::ptrdiff_t>(row);
        if (!kept.contains(target[row])) {
            steps.push_back({.kind = ListStep::Kind::insert,
                             .row = static_cast<int>(row),
                             .source = static_cast<int>(row)});
            list.insert(place, target[row]);
            continue;
        }
        const auto found = std::find(place, list.end(), target[row]);
        steps.push_back({.kind = ListStep::Kind::move,
                         .row = static_cast<int>(found - list.begin()),
                         .target = static_cast<int>(row)});
        std::rotate(place, found, found + 1);
    }
    return steps;
}

} // namespace tarnvale
