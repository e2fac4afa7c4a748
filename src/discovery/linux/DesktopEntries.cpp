#include "discovery/linux/DesktopEntries.h"

#include "discovery/findTool.h"
#include "discovery/linux/procFiles.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <fcntl.h>

namespace tarnvale {

namespace {

constexpr std::string_view suffix = ".desktop";

/// Programs that run others: an entry that starts one of them says nothing about who it is.
constexpr std::array<std::string_view, 27> runtimes{
    "sh",   "bash", "dash",   "zsh",  "fish",  "ksh",  "csh",   "tcsh",       "busybox",
    "env",  "perl", "ruby",   "node", "bun",   "deno", "php",   "java",       "mono",
    "sudo", "doas", "pkexec", "snap", "flatpak", "xdg-open", "gtk-launch", "dbus-launch", "systemd-run"};

bool isRuntime(std::string_view program) {
    const std::string_view name = lastPathComponent(program);
    return name.starts_with("python") || std::find(runtimes.begin(), runtimes.end(), name) != runtimes.end();
}

/// Cuts the first argument off an `Exec` value: double quotes group, a backslash keeps what follows.
std::string takeArgument(std::string_view &exec) {
    exec.remove_prefix(std::min(exec.find_first_not_of(' '), exec.size()));
    std::string argument;
    bool isQuoted = false;
    while (!exec.empty() && (isQuoted || exec.front() != ' ')) {
        if (exec.front() == '\\' && exec.size() > 1)
            exec.remove_prefix(1);
        else if (exec.front() == '"') {
            isQuoted = !isQuoted;
            exec.remove_prefix(1);
            continue;
        }
        argument += exec.front();
        exec.remove_prefix(1);
    }
    return argument;
}

std::string programOf(std::string_view exec) {
    std::string program = takeArgument(exec);
    if (lastPathComponent(program) == "env")
        do
            program = takeArgument(exec);
        while (program.find('=') != program.npos);
    return program;
}

/// `text` with systemd's "\x2d" and kin as the bytes they stand for (systemd.unit(5)).
std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        unsigned value = 0;
        const bool isEscape = text.size() >= 4 && text.starts_with("\\x") &&
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

/// Adds what one component of a group's path says:
///   app[-<launcher>]-<id>-<random>.scope, app[-<launcher>]-<id>[@<random>].service, app[-<launcher>]-<id>.slice,
///   flatpak-<id>-<random>.scope, snap.<snap>.<app>-<random>.scope (also with a dot before the random part).
/// A launcher's name is told from the id only by which desktop file exists, so every reading is tried.
void addIds(std::string_view unit, std::vector<std::string> &ids) {
    std::string_view name = unit;
    const bool isScope = takeSuffix(name, ".scope");
    const bool isService = !isScope && takeSuffix(name, ".service");
    const bool isSlice = !isScope && !isService && takeSuffix(name, ".slice");
    if (isScope && takePrefix(name, "snap.")) {
        const auto parts = split(name, '.');
        if (parts.size() >= 2)
            ids.push_back(std::string(parts[0]) + "_" + std::string(split(parts[1], '-').front()));
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

std::string environmentOr(const char *variable, const std::string &otherwise) {
    const char *value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

/// `program` as an absolute path without links, searched on the path when it is a bare name; empty without it.
std::string resolved(const std::string &program) {
    std::vector<std::string> candidates{program};
    if (program.find('/') == program.npos) {
        candidates.clear();
        for (const std::string_view folder : split(environmentOr("PATH", "/usr/local/bin:/usr/bin:/bin"), ':'))
            candidates.push_back(std::string(folder) + "/" + program);
    }
    const auto found = firstExecutable(candidates);
    std::array<char, PATH_MAX> path;
    return found && realpath(found->c_str(), path.data()) != nullptr ? std::string(path.data()) : std::string();
}

timespec changeOf(const std::string &folder) {
    struct stat status{};
    return stat(folder.c_str(), &status) == 0 ? status.st_mtim : timespec{};
}

} // namespace

// Sample:
//   [Desktop Entry]
//   Type=Application
//   Name=Editor
//   Exec="/opt/my editor/editor" --new-window %F
std::optional<DesktopEntry> parseDesktopEntry(std::string_view content) {
    DesktopEntry entry;
    bool isMainGroup = false;
    bool isApplication = false;
    for (std::string_view line : nonEmptyLines(content)) {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.starts_with('['))
            isMainGroup = line == "[Desktop Entry]";
        const std::size_t equals = line.find('=');
        if (!isMainGroup || equals == line.npos)
            continue;
        const std::string_view key = line.substr(0, line.find_last_not_of(' ', equals - 1) + 1);
        std::string_view value = line.substr(equals + 1);
        value.remove_prefix(leadingWhitespace(value));
        if (key == "Type")
            isApplication = value == "Application";
        else if (key == "Exec")
            entry.program = programOf(value);
        else if (key == "Hidden")
            entry.isHidden = value == "true";
        else if (key == "NoDisplay")
            entry.isShown = value != "true";
    }
    return isApplication && !entry.program.empty() ? std::optional(entry) : std::nullopt;
}

std::vector<std::string> applicationIds(std::string_view cgroup) {
    std::vector<std::string> ids;
    const auto components = split(cgroup, '/');
    for (auto component = components.rbegin(); component != components.rend(); ++component)
        addIds(*component, ids);
    return ids;
}

std::vector<std::string> applicationFolders() {
    const std::string home = homeFolder();
    const std::string own = environmentOr("XDG_DATA_HOME", home + "/.local/share");
    const std::string shared = environmentOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    std::vector<std::string> folders{own + "/applications"};
    for (const std::string_view folder : split(shared, ':'))
        if (folder.starts_with('/'))
            folders.push_back(std::string(folder) + "/applications");
    folders.push_back(own + "/flatpak/exports/share/applications");
    folders.emplace_back("/var/lib/flatpak/exports/share/applications");
    folders.emplace_back("/var/lib/snapd/desktop/applications");
    std::vector<std::string> unique;
    for (std::string &folder : folders)
        if (std::find(unique.begin(), unique.end(), folder) == unique.end())
            unique.push_back(std::move(folder));
    return unique;
}

std::optional<std::string> DesktopEntries::findById(const std::string &id) {
    if (id.empty() || id.find('/') != id.npos)
        return std::nullopt;
    forgetIfChanged();
    const auto [answer, isNew] = m_byId.try_emplace(id);
    for (auto folder = m_folders.begin(); isNew && !answer->second && folder != m_folders.end(); ++folder) {
        const std::string path = *folder + "/" + id + std::string(suffix);
        if (access(path.c_str(), R_OK) == 0)
            answer->second = path;
    }
    return answer->second;
}

std::optional<std::string> DesktopEntries::findByExecutable(const std::string &executable) {
    if (executable.empty() || isRuntime(executable))
        return std::nullopt;
    forgetIfChanged();
    if (!m_isRead)
        readAll();
    const auto found = m_byExecutable.find(executable);
    return found == m_byExecutable.end() ? std::nullopt : std::optional(found->second);
}

/// Once in a scan: adding, renaming or removing a file changes its folder's time.
void DesktopEntries::forgetIfChanged() {
    if (m_isChecked)
        return;
    m_isChecked = true;
    std::vector<timespec> changed;
    for (const std::string &folder : m_folders)
        changed.push_back(changeOf(folder));
    const auto isSame = [](const timespec &a, const timespec &b) {
        return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
    };
    if (std::equal(changed.begin(), changed.end(), m_changed.begin(), m_changed.end(), isSame))
        return;
    m_changed = std::move(changed);
    m_byId.clear();
    m_byExecutable.clear();
    m_isRead = false;
}

void DesktopEntries::readAll() {
    m_isRead = true;
    for (const std::string &folder : m_folders)
        read(folder);
}

void DesktopEntries::read(const std::string &folder) {
    const FileDescriptor listing = openFolderAt(AT_FDCWD, folder.c_str());
    if (!listing.isOpen())
        return;
    std::vector<std::string> names;
    forEachEntry(listing.get(), [&](std::string_view name, ino_t) {
        if (name.ends_with(suffix))
            names.emplace_back(name);
    });
    std::sort(names.begin(), names.end());
    std::string content;
    for (const bool wantsShown : {true, false}) {
        for (const std::string &name : names) {
            if (!readFileAt(listing.get(), name.c_str(), content, 256u << 10))
                continue;
            const auto entry = parseDesktopEntry(content);
            if (!entry || entry->isHidden || entry->isShown != wantsShown || isRuntime(entry->program))
                continue;
            if (const std::string program = resolved(entry->program); !program.empty())
                m_byExecutable.try_emplace(program, folder + "/" + name);
        }
    }
}

} // namespace tarnvale
