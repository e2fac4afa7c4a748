#pragma once

#include "presentation/groupedRows.h"
#include "presentation/shared/SidebarItem.h"

#include <QString>

#include <cstdint>
#include <set>
#include <vector>

namespace tarnvale {

/// Those rows of `groups` of which any port is in `watched`; groups that have none are left out.
[[nodiscard]] std::vector<RowSection> watchedRows(const std::vector<RowSection> &groups,
                                                  const std::set<std::int64_t> &watched);

/// How many rows those are.
[[nodiscard]] int watchedCount(const std::vector<RowSection> &groups, const std::set<std::int64_t> &watched);

/// The rows that go with `item`: all of them, but for a single section and for the watched ones.
[[nodiscard]] std::vector<RowSection> rowsOf(SidebarItem item, std::vector<RowSection> groups,
                                             const std::set<std::int64_t> &watched);

/// What a page of ports says when it has no rows.
[[nodiscard]] QString emptyMessage(SidebarItem item, const QString &query, bool showsAll);

/// Whether the page of `item` lists ports, which a search can narrow.
[[nodiscard]] bool listsPorts(SidebarItem item);

} // namespace tarnvale
