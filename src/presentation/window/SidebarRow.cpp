#include "presentation/window/SidebarRow.h"

#include <QCoreApplication>

namespace tarnvale {

const std::vector<ListRole<SidebarRow>> &SidebarRow::roles() {
    static const std::vector<ListRole<SidebarRow>> all{
        {"itemKey", [](const SidebarRow &row) -> QVariant { return row.key(); }},
        {"section", [](const SidebarRow &row) -> QVariant { return row.section; }},
        {"label", [](const SidebarRow &row) -> QVariant { return label(row.item); }},
        {"symbol", [](const SidebarRow &row) -> QVariant { return symbol(row.item); }},
        {"count", [](const SidebarRow &row) -> QVariant { return row.count; }},
    };
    return all;
}

int rowCount(const std::vector<RowSection> &groups) {
    std::size_t rows = 0;
    for (const RowSection &group : groups)
        rows += group.rows.size();
    return static_cast<int>(rows);
}

std::vector<SidebarRow> sidebarRows(const std::vector<RowSection> &groups, const SidebarCounts &counts) {
    const QString ports = QCoreApplication::translate("Sidebar", "Ports");
    const QString workspace = QCoreApplication::translate("Sidebar", "Workspace");
    std::vector<SidebarRow> rows{{SidebarItem::overview, {}, 0},
                                 {SidebarItem::allPorts, ports, rowCount(groups)}};
    for (const RowSection &group : groups)
        if (!group.rows.empty())
            rows.push_back({sidebarItem(group.group), ports, static_cast<int>(group.rows.size())});
    rows.push_back({SidebarItem::watched, ports, counts.watched});
    rows.push_back({SidebarItem::stacks, workspace, counts.stacks});
    if (counts.sites > 0)
        rows.push_back({SidebarItem::sites, workspace, counts.sites});
    rows.push_back({SidebarItem::activity, workspace, 0});
    return rows;
}

} // namespace tarnvale
