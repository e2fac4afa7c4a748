#include "discovery/linux/applicationIds.h"

#include "discovery/text.h"

#include <charconv>

namespace tarnvale {

namespace {

/// `text` with systemd's "\x2d" and kin as the bytes they stand for (systemd.unit(5)).
std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        unsigned value = 0;
        const bool isEscape =
            text.size() >= 4 && text.starts_with("\\x") &&
            std::from_chars(text.data() + 2, text.data() + 4, value, 16).ptr == text.data() + 4;
        result += isEscape ? static_cast<char>(value) : text.front();
        text.remove_prefix(isEscape ? 4 : 1);
    }
    return result;
}

/// `name` without the last part that begins with `separator`; all of it when there is none.
std::string_view withoutLast(std::string_view name, char separator) {
    return name.substr(0, name.rfind(separator));
}

bool takePrefix(std::string_view &text, std::string_view prefix) {
    const bool hasPrefix = text.starts_with(prefix);
    if (hasPrefix)
        text.remove_prefix(prefix.size());
    return hasPrefix;
}

bool takeSuffix(std::string_view &text, std::string_view ending) {
    const bool hasSuffix = text.ends_with(ending);
    if (hasSuffix)
        text.remove_suffix(ending.size());
    return hasSuffix;
}

/// Adds the id of "<snap>.<app>-<UUID>" or "<snap>.<app>.<UUID>"; both names may hold dashes.
void addSnapId(std::string_view name, std::vector<std::string> &ids) {
    constexpr std::size_t randomPart = 37; // a dash and a UUID (RFC 4122, 3)
    const auto parts = split(name, '.');
    if (parts.size() < 2)
        return;
    std::string_view application = parts[1];
    if (application.size() > randomPart && application[application.size() - randomPart] == '-')
        application.remove_suffix(randomPart);
    ids.push_back(std::string(parts[0]) + "_" + std::string(application));
}

/// Adds what one component of a group's path says:
///   app[-<launcher>]-<id>-<random>.scope, app[-<launcher>]-<id>[@<random>].service,
///   app[-<launcher>]-<id>.slice, flatpak-<id>-<random>.scope, snap.<snap>.<app>-<random>.scope (also with a
///   dot before the random part).
/// A launcher's name is told from the id only by which desktop file exists, so every reading is tried.
void addIds(std::string_view unit, std::vector<std::string> &ids) {
    std::string_view name = unit;
    const bool isScope = takeSuffix(name, ".scope");
    const bool isService = !isScope && takeSuffix(name, ".service");
    const bool isSlice = !isScope && !isService && takeSuffix(name, ".slice");
    if (isScope && takePrefix(name, "snap.")) {
        addSnapId(name, ids);
        return;
    }
    const bool isApplication = takePrefix(name, "app-") || (isScope && takePrefix(name, "flatpak-"));
    if (!isApplication || !(isScope || isService || isSlice))
        return;
    if (isScope)
        name = withoutLast(name, '-');
    if (isService)
        name = withoutLast(name, '@');
    for (;;) {
        ids.push_back(unescaped(name));
        const std::size_t dash = name.find('-');
        if (dash == name.npos)
            return;
        name.remove_prefix(dash + 1);
    }
}

} // namespace

std::vector<std::string> applicationIds(std::string_view cgroup) {
    std::vector<std::string> ids;
    const auto components = split(cgroup, '/');
    for (auto component = components.rbegin(); component != components.rend(); ++component)
        addIds(*component, ids);
    return ids;
}

} // namespace tarnvale
