#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace tarnvale {

/// One line of a menu, wherever the menu is shown: by a window of ours or by the host of a tray.
struct MenuEntry {
    QString title; ///< plain text; empty: a divider
    std::function<void()> act = {};
    bool isEnabled = true;
    std::optional<bool> isChecked = std::nullopt; ///< nothing: not a toggle
    std::vector<MenuEntry> children = {};         ///< not empty: a submenu
    QString shortcut = {};                        ///< shown beside the title, as in "Ctrl+Q"

    [[nodiscard]] bool isDivider() const { return title.isEmpty(); }
};

/// A divider.
[[nodiscard]] inline MenuEntry menuDivider() {
    return {};
}

/// An entry that does something.
[[nodiscard]] inline MenuEntry menuAction(QString title, std::function<void()> act) {
    return {.title = std::move(title), .act = std::move(act)};
}

} // namespace tarnvale
