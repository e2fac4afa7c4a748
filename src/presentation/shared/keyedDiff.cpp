#include "presentation/shared/keyedDiff.h"

#include <QHash>
#include <QSet>

#include <algorithm>

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

/// Returns what stays of `list`.
std::vector<Key> removeTheGone(const std::vector<Key> &list, const std::vector<Key> &target,
                               std::vector<ListStep> &steps) {
    const QSet<Key> wanted(target.begin(), target.end());
    const auto isGone = [&](const Key &key) { return !wanted.contains(key); };
    for (auto end = list.rbegin(); (end = std::find_if(end, list.rend(), isGone)) != list.rend();) {
        const auto begin = std::find_if_not(end, list.rend(), isGone);
        steps.push_back({.kind = ListStep::Kind::remove,
                         .row = static_cast<int>(list.rend() - begin),
                         .count = static_cast<int>(begin - end)});
        end = begin;
    }
    std::vector<Key> kept;
    std::remove_copy_if(list.begin(), list.end(), std::back_inserter(kept), isGone);
    return kept;
}

/// The rows that stay and have no place in the new list yet. They follow those that have.
class Waiting {
public:
    explicit Waiting(const std::vector<Key> &keys) : m_isPlaced(keys.size()) {
        for (std::size_t place = 0; place < keys.size(); ++place)
            m_places[keys[place]] = place;
    }

    [[nodiscard]] bool contains(const Key &key) const { return m_places.contains(key); }

    /// Places a row; returns how many others waited before it.
    std::ptrdiff_t take(const Key &key) {
        const auto first = m_isPlaced.begin();
        const auto row = first + static_cast<std::ptrdiff_t>(m_places.take(key));
        const auto others = std::count(first + m_front, row, false);
        *row = true;
        m_front = std::find(first + m_front, m_isPlaced.end(), false) - first;
        return others;
    }

private:
    QHash<Key, std::size_t> m_places;
    std::vector<bool> m_isPlaced;
    std::ptrdiff_t m_front = 0; ///< all before it are placed
};

std::vector<ListStep> stepsBetween(const std::vector<QString> &before, const std::vector<QString> &after) {
    const std::vector<Key> target = numbered(after);
    std::vector<ListStep> steps;
    Waiting waiting(removeTheGone(numbered(before), target, steps));
    const auto isNew = [&](const Key &key) { return !waiting.contains(key); };
    for (auto key = target.begin(); key != target.end();) {
        const auto row = static_cast<int>(key - target.begin());
        if (const auto end = std::find_if_not(key, target.end(), isNew); end != key) {
            steps.push_back(
                {.kind = ListStep::Kind::insert, .row = row, .count = static_cast<int>(end - key)});
            key = end;
            continue;
        }
        if (const auto others = static_cast<int>(waiting.take(*key)); others > 0)
            steps.push_back({.kind = ListStep::Kind::move, .row = row + others, .target = row});
        ++key;
    }
    return steps;
}

} // namespace

std::vector<ListStep> keyedDiff(const std::vector<QString> &before, const std::vector<QString> &after) {
    // Most lists are as they were but for one place, or come and go whole: only what differs is compared.
    const auto [oldBegin, newBegin] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto [oldEnd, newEnd] = std::mismatch(before.rbegin(), std::make_reverse_iterator(oldBegin),
                                                after.rbegin(), std::make_reverse_iterator(newBegin));
    const auto same = static_cast<int>(oldBegin - before.begin());
    const auto gone = static_cast<int>(oldEnd.base() - oldBegin);
    const auto come = static_cast<int>(newEnd.base() - newBegin);
    if (gone == 0 && come == 0)
        return {};
    if (come == 0)
        return {{.kind = ListStep::Kind::remove, .row = same, .count = gone}};
    if (gone == 0)
        return {{.kind = ListStep::Kind::insert, .row = same, .count = come}};
    std::vector<ListStep> steps = stepsBetween({oldBegin, oldEnd.base()}, {newBegin, newEnd.base()});
    for (ListStep &step : steps) {
        step.row += same;
        if (step.kind == ListStep::Kind::move)
            step.target += same;
    }
    return steps;
}

} // namespace tarnvale
