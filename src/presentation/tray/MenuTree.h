#pragma once

#include "presentation/MenuEntry.h"

#include <QVariantMap>

#include <functional>
#include <vector>

namespace tarnvale {

/// An entry of a menu under the number by which a host calls it.
struct MenuNode {
    int id = 0; ///< 0 is the menu itself
    QString title;
    QVariantMap properties; ///< as `menuProperties` gives them
    std::function<void()> act = {};
    bool isEnabled = true;
    std::vector<MenuNode> children = {};
};

/// A menu whose entries keep their numbers from one version to the next.
///
/// A number always stands for the same titles from the top down to the entry, and is never given to others: a
/// click on what a host showed a moment ago never does something else now.
class MenuTree {
public:
    MenuTree();

    /// Replaces the menu; true when entries came, went or moved, false when at most their properties and
    /// actions changed.
    bool set(const std::vector<MenuEntry> &entries);

    [[nodiscard]] const MenuNode &root() const { return m_root; }

    /// Null for a number that isn't in the menu. Good until the next `set`.
    [[nodiscard]] const MenuNode *find(int id) const;

private:
    [[nodiscard]] std::vector<MenuNode> number(const std::vector<MenuEntry> &entries,
                                               const std::vector<MenuNode> &before);

    MenuNode m_root;
    int m_lastId = 0;
};

/// Calls `visit` for `node` and all below it, each before what is below it.
void forEachNode(const MenuNode &node, const std::function<void(const MenuNode &)> &visit);

} // namespace tarnvale
