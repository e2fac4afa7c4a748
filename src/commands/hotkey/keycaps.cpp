#include "commands/hotkey/keycaps.h"

#include "commands/hotkey/namedKeys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnvale {

namespace {

constexpr std::array modifiers{
    std::pair<std::string_view, const char *>{"⌃", "Ctrl"},
    std::pair<std::string_view, const char *>{"⌥", "Alt"},
    std::pair<std::string_view, const char *>{"⇧", "Shift"},
    std::pair<std::string_view, const char *>{"⌘", "Super"},
};

/// Cuts a modifier off the front; null when there is none.
const char *takeModifier(std::string_view &display) {
    for (const auto &[symbol, name] : modifiers) {
        if (!display.starts_with(symbol))
            continue;
        display.remove_prefix(symbol.size());
        return name;
    }
    return nullptr;
}

std::string caption(std::string_view label) {
    const auto keys = namedKeys();
    const auto found =
        std::find_if(keys.begin(), keys.end(), [label](const NamedKey &key) { return label == key.label; });
    return found == keys.end() ? std::string(label) : found->caption;
}

} // namespace

std::vector<std::string> keycaps(std::string_view display) {
    std::vector<std::string> caps;
    while (const char *name = takeModifier(display))
        caps.emplace_back(name);
    if (!display.empty())
        caps.push_back(caption(display));
    return caps;
}

std::string_view keyLabel(std::string_view display) {
    while (takeModifier(display) != nullptr) {
    }
    return display;
}

std::string displayText(std::string_view display) {
    std::string text;
    for (const std::string &cap : keycaps(display))
        text += (text.empty() ? "" : "+") + cap;
    return text;
}

} // namespace tarnvale
