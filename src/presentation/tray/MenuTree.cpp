#include "presentation/tray/MenuTree.h"

#include "presentation/tray/menuProperties.h"

#include <algorithm>

namespace tarnvale {

namespace {

bool hasSameShape(const MenuNode &a, const MenuNode &b) {
    return a.id == b.id && std::equal(a.children.begin(), a.children.end(), b.children.begin(),
                                      b.children.end(), hasSameShape);
}

const MenuNode *findBelow(const MenuNode &node, int id) {
    if (node.id == id)
        return &node;
    for (const MenuNode &child : node.children)
        if (const MenuNode *found = findBelow(child, id))
            return found;
    return nullptr;
}

} // namespace

MenuTree::MenuTree() {
    m_root.properties = {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

bool MenuTree::set(const std::vector<MenuEntry> &entries) {
    MenuNode root = m_root;
    root.children = number(entries, m_root.children);
    const bool isChanged = !hasSameShape(root, m_root);
    m_root = std::move(root);
    return isChanged;
}

const MenuNode *MenuTree::find(int id) const {
    return findBelow(m_root, id);
}

/// The first entry of a title keeps the number of the first of that title before, the second that of the
/// second.
std::vector<MenuNode> MenuTree::number(const std::vector<MenuEntry> &entries,
                                       const std::vector<MenuNode> &before) {
    std::vector<bool> isTaken(before.size());
    std::vector<MenuNode> nodes;
    for (const MenuEntry &entry : entries) {
        std::size_t i = 0;
        while (i < before.size() && (isTaken[i] || before[i].title != entry.title ||
                                     before[i].children.empty() != entry.children.empty()))
            ++i;
        const bool isKnown = i < before.size();
        if (isKnown)
            isTaken[i] = true;
        static const std::vector<MenuNode> none;
        nodes.push_back({isKnown ? before[i].id : ++m_lastId, entry.title, menuProperties(entry), entry.act,
                         entry.isEnabled, number(entry.children, isKnown ? before[i].children : none)});
    }
    return nodes;
}

void forEachNode(const MenuNode &node, const std::function<void(const MenuNode &)> &visit) {
    visit(node);
    for (const MenuNode &child : node.children)
        forEachNode(child, visit);
}

} // namespace tarnvale
