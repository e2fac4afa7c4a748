#include "discovery/linux/DesktopEntries.h"

#include "discovery/findTool.h"
#include "discovery/linux/parseDesktopEntry.h"
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
    "sh",   "bash", "dash",   "zsh",  "fish",    "ksh",      "csh",        "tcsh",        "busybox",
    "env",  "perl", "ruby",   "node", "bun",     "deno",     "php",        "java",        "mono",
    "sudo", "doas", "pkexec", "snap", "flatpak", "xdg-open", "gtk-launch", "dbus-launch", "systemd-run"};

bool isRuntime(std::string_view program) {
    const std::string_view name = lastPathComponent(program);
    return name.starts_with("python") || std::find(runtimes.begin(), runtimes.end(), name) != runtimes.end();
}

std::string environmentOr(const char *variable, const std::string &otherwise) {
    const char *value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

/// `program` as an absolute path without links, searched on the path when it is a bare name; empty without
/// it.
std::string resolved(const std::string &program) {
    std::vector<std::string> candidates;
    if (program.find('/') == program.npos) {
        const std::string searched = environmentOr("PATH", "/usr/local/bin:/usr/bin:/bin");
        for (const std::string_view folder : split(searched, ':'))
            candidates.push_back(std::string(folder) + "/" + program);
    } else {
        candidates.push_back(program);
    }
    const auto found = firstExecutable(candidates);
    std::array<char, PATH_MAX> path;
    return found && realpath(found->c_str(), path.data()) != nullptr ? std::string(path.data())
                                                                     : std::string();
}

timespec changeOf(const std::string &folder) {
    struct stat status {};
    return stat(folder.c_str(), &status) == 0 ? status.st_mtim : timespec{};
}

} // namespace

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
    changed.reserve(m_folders.size());
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
                m_byExecutable.try_emplace(program, std::string(folder).append("/").append(name));
        }
    }
}

} // namespace tarnvale
