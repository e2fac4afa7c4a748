#include "presentation/shared/SidebarItem.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

struct Description {
    SidebarItem item;
    const char *key;
    const char *label;
    const char *symbol;
};

constexpr std::array descriptions{
    Description{SidebarItem::overview, "overview", QT_TRANSLATE_NOOP("Sidebar", "Overview"), "house"},
    Description{SidebarItem::allPorts, "allPorts", QT_TRANSLATE_NOOP("Sidebar", "All Ports"), "network"},
    Description{SidebarItem::web, "web", nullptr, "globe"},
    Description{SidebarItem::services, "services", nullptr, "cylinder"},
    Description{SidebarItem::other, "other", nullptr, "puzzlepiece"},
    Description{SidebarItem::watched, "watched", QT_TRANSLATE_NOOP("Sidebar", "Watched"), "bell"},
    Description{SidebarItem::stacks, "stacks", QT_TRANSLATE_NOOP("Sidebar", "Stacks"), "square.stack.3d.up"},
    Description{SidebarItem::sites, "sites", QT_TRANSLATE_NOOP("Sidebar", "Sites"), "link"},
    Description{SidebarItem::activity, "activity", QT_TRANSLATE_NOOP("Sidebar", "Activity"), "clock"},
};

const Description &descriptionOf(SidebarItem item) {
    return descriptions[static_cast<std::size_t>(item)];
}

} // namespace

QString label(SidebarItem item) {
    if (const auto group = portGroup(item))
        return title(*group);
    return QCoreApplication::translate("Sidebar", descriptionOf(item).label);
}

QString symbol(SidebarItem item) {
    return QLatin1String(descriptionOf(item).symbol);
}

QString key(SidebarItem item) {
    return QLatin1String(descriptionOf(item).key);
}

std::optional<SidebarItem> sidebarItem(const QString &key) {
    for (const Description &each : descriptions)
        if (key == QLatin1String(each.key))
            return each.item;
    return std::nullopt;
}

SidebarItem sidebarItem(PortGroup group) {
    switch (group) {
    case PortGroup::web:
        return SidebarItem::web;
    case PortGroup::services:
        return SidebarItem::services;
    case PortGroup::other:
        break;
    }
    return SidebarItem::other;
}

std::optional<PortGroup> portGroup(SidebarItem item) {
    for (const PortGroup group : portGroups)
        if (sidebarItem(group) == item)
            return group;
    return std::nullopt;
}

} // namespace tarnvale
