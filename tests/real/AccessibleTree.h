#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// One thing that a screen reader tells of.
struct AccessibleNode {
    std::string role;
    std::string name;
    std::string text;             ///< of what holds lines of text, the last ones of a long text
    std::set<std::string> states; ///< as at-spi names them, "focused" for one
    int x = 0;                    ///< of the screen, in pixels, like the rest
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] bool is(const std::string &state) const { return states.contains(state); }
};

/// The application as a screen reader meets it, at one moment.
struct AccessibleTree {
    std::vector<AccessibleNode> nodes; ///< parents before their children

    /// The first that is on the screen, has this role and has these words in its name; null when none does.
    [[nodiscard]] const AccessibleNode *shown(std::string_view role, std::string_view words = {}) const;

    /// The same, or else the first that isn't on the screen: scrolled out of sight, or hidden.
    [[nodiscard]] const AccessibleNode *present(std::string_view role, std::string_view words = {}) const;

    [[nodiscard]] std::size_t countShown(std::string_view role) const;

    /// What has the keyboard; null when nothing does.
    [[nodiscard]] const AccessibleNode *focused() const;

    /// The row of the port in the panel's list; null when there is none.
    [[nodiscard]] const AccessibleNode *row(std::uint16_t port) const;

    /// The panel is on the screen and has the keyboard.
    [[nodiscard]] bool isPanelOpen() const;

    /// The main window's frame, while it is on the screen; null while it isn't.
    [[nodiscard]] const AccessibleNode *window() const;

    /// It has the keyboard and shows the page of this title.
    [[nodiscard]] bool isWindowOpen(std::string_view page) const;

    /// All of it, for the message of a test that fails.
    [[nodiscard]] std::string text() const;
};

/// The tree in what accessibleTree.py prints; nothing when it is cut short or none.
[[nodiscard]] std::optional<AccessibleTree> parseAccessibleTree(const std::string &json);

} // namespace tarnvale
