#include "real/AccessibleTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace tarnvale {

namespace {

AccessibleNode nodeIn(const QJsonObject &object) {
    const QJsonArray box = object[QStringLiteral("box")].toArray();
    AccessibleNode node{.role = object[QStringLiteral("role")].toString().toStdString(),
                        .name = object[QStringLiteral("name")].toString().toStdString(),
                        .text = object[QStringLiteral("text")].toString().toStdString(),
                        .states = {},
                        .x = box[0].toInt(),
                        .y = box[1].toInt(),
                        .width = box[2].toInt(),
                        .height = box[3].toInt()};
    for (const QJsonValue state : object[QStringLiteral("states")].toArray())
        node.states.insert(state.toString().toStdString());
    return node;
}

} // namespace

const AccessibleNode *AccessibleTree::shown(std::string_view role, std::string_view words) const {
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const AccessibleNode &node) {
        return node.role == role && node.is("showing") && node.name.find(words) != std::string::npos;
    });
    return found == nodes.end() ? nullptr : &*found;
}

std::size_t AccessibleTree::countShown(std::string_view role) const {
    return static_cast<std::size_t>(
        std::count_if(nodes.begin(), nodes.end(),
                      [&](const AccessibleNode &node) { return node.role == role && node.is("showing"); }));
}

const AccessibleNode *AccessibleTree::present(std::string_view role, std::string_view words) const {
    if (const AccessibleNode *const node = shown(role, words))
        return node;
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const AccessibleNode &node) {
        return node.role == role && node.name.find(words) != std::string::npos;
    });
    return found == nodes.end() ? nullptr : &*found;
}

const AccessibleNode *AccessibleTree::focused() const {
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [](const AccessibleNode &node) { return node.is("focused"); });
    return found == nodes.end() ? nullptr : &*found;
}

const AccessibleNode *AccessibleTree::row(std::uint16_t port) const {
    return shown("list item", "port " + std::to_string(port));
}

bool AccessibleTree::isPanelOpen() const {
    const AccessibleNode *panel = shown("frame", "Tarnvale");
    return panel != nullptr && panel->is("active");
}

/// Its title is the page's, but the panel's never is.
const AccessibleNode *AccessibleTree::window() const {
    const AccessibleNode *frame = nullptr;
    for (const AccessibleNode &node : nodes) {
        if (node.role == "frame" && node.is("showing"))
            frame = &node;
        else if (frame != nullptr && node.name.starts_with("Refresh now") && node.is("showing"))
            return frame;
    }
    return nullptr;
}

bool AccessibleTree::isWindowOpen(std::string_view page) const {
    const AccessibleNode *const frame = window();
    return frame != nullptr && frame->is("active") && frame->name == page;
}

std::string AccessibleTree::text() const {
    std::string text;
    for (const AccessibleNode &node : nodes) {
        if (!node.is("showing"))
            continue;
        text += node.role + " '" + node.name + "'";
        for (const std::string &state : node.states)
            text += " " + state;
        text += "\n";
    }
    return text;
}

std::optional<AccessibleTree> parseAccessibleTree(const std::string &json) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json));
    if (!document.isArray())
        return std::nullopt;
    AccessibleTree tree;
    for (const QJsonValue value : document.array())
        tree.nodes.push_back(nodeIn(value.toObject()));
    return tree;
}

} // namespace tarnvale
