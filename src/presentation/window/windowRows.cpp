#include "presentation/window/windowRows.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnvale {

namespace {

bool isWatched(const RowEntry &row, const std::set<std::int64_t> &watched) {
    return watched.contains(row.port->port) ||
           std::any_of(row.otherPorts.begin(), row.otherPorts.end(),
                       [&](std::int64_t port) { return watched.contains(port); });
}

} // namespace

std::vector<RowSection> watchedRows(const std::vector<RowSection> &groups,
                                    const std::set<std::int64_t> &watched) {
    std::vector<RowSection> result;
    for (const RowSection &group : groups) {
        RowSection kept{group.group, {}};
        std::copy_if(group.rows.begin(), group.rows.end(), std::back_inserter(kept.rows),
                     [&](const RowEntry &row) { return isWatched(row, watched); });
        if (!kept.rows.empty())
            result.push_back(std::move(kept));
    }
    return result;
}

int watchedCount(const std::vector<RowSection> &groups, const std::set<std::int64_t> &watched) {
    std::ptrdiff_t count = 0;
    for (const RowSection &group : groups)
        count +=
            std::ranges::count_if(group.rows, [&](const RowEntry &row) { return isWatched(row, watched); });
    return static_cast<int>(count);
}

std::vector<RowSection> rowsOf(SidebarItem item, std::vector<RowSection> groups,
                               const std::set<std::int64_t> &watched) {
    if (item == SidebarItem::watched)
        return watchedRows(groups, watched);
    if (const auto group = portGroup(item))
        std::erase_if(groups, [&](const RowSection &each) { return each.group != *group; });
    return groups;
}

QString emptyMessage(SidebarItem item, const QString &query, bool showsAll) {
    if (item == SidebarItem::watched)
        return QCoreApplication::translate("MainView", "No watched ports are running");
    if (!query.isEmpty())
        return QCoreApplication::translate("MainView", "No ports match “%1”").arg(query);
    return showsAll ? QCoreApplication::translate("MainView", "Nothing is listening")
                    : QCoreApplication::translate("MainView", "No dev servers running");
}

bool listsPorts(SidebarItem item) {
    return item == SidebarItem::allPorts || item == SidebarItem::watched || portGroup(item).has_value();
}

} // namespace tarnvale
