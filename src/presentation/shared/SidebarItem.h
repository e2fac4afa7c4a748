#pragma once

#include "presentation/PortGroup.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace tarnvale {

/// What the window's sidebar leads to: the pages, and the ports of one section.
enum class SidebarItem : std::uint8_t {
    overview,
    allPorts,
    web,
    services,
    other,
    watched,
    stacks,
    sites,
    activity
};

/// In no particular order: how the sidebar puts them is its own affair.
inline constexpr std::array sidebarItems{SidebarItem::overview, SidebarItem::allPorts, SidebarItem::web,
                                         SidebarItem::services, SidebarItem::other,    SidebarItem::watched,
                                         SidebarItem::stacks,   SidebarItem::sites,    SidebarItem::activity};

/// The item's name wherever the user meets it: "All Ports".
[[nodiscard]] QString label(SidebarItem item);

/// The name of its symbol.
[[nodiscard]] QString symbol(SidebarItem item);

/// Its name in QML and in what is stored: "allPorts".
[[nodiscard]] QString key(SidebarItem item);

/// The item of that `key`; nothing for any other text.
[[nodiscard]] std::optional<SidebarItem> sidebarItem(const QString &key);

/// The item that shows the ports of `group` alone.
[[nodiscard]] SidebarItem sidebarItem(PortGroup group);

/// The section whose ports `item` shows; nothing when it isn't one section's.
[[nodiscard]] std::optional<PortGroup> portGroup(SidebarItem item);

} // namespace tarnvale
