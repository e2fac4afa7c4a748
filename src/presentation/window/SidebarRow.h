#pragma once

#include "presentation/groupedRows.h"
#include "presentation/shared/KeyedListModel.h"
#include "presentation/shared/SidebarItem.h"

#include <QString>

#include <vector>

namespace tarnvale {

/// A row of the window's sidebar, ready to be shown.
struct SidebarRow {
    SidebarItem item = SidebarItem::overview;
    QString section; ///< the heading that it stands under; empty: none
    int count = 0;   ///< shown beside it, but for 0

    [[nodiscard]] QString key() const { return tarnvale::key(item); }
    [[nodiscard]] static const std::vector<ListRole<SidebarRow>> &roles();

    bool operator==(const SidebarRow &) const = default;
};

/// What the sidebar counts beside the rows of ports.
struct SidebarCounts {
    int watched = 0;
    int stacks = 0;
    int sites = 0;
};

/// The sidebar over `groups`. A section without rows and sites where there are none have no row.
[[nodiscard]] std::vector<SidebarRow> sidebarRows(const std::vector<RowSection> &groups,
                                                  const SidebarCounts &counts);

/// How many rows `groups` have.
[[nodiscard]] int rowCount(const std::vector<RowSection> &groups);

} // namespace tarnvale
