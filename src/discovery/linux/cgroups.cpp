#include "discovery/linux/cgroups.h"

#include "discovery/linux/procFiles.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

/// Units that keep the system or the desktop itself running, as systemd, GNOME, Plasma and the common
/// session daemons name theirs.
constexpr std::array<std::string_view, 31> sessionUnitPrefixes{"systemd-",
                                                               "dbus",
                                                               "user@",
                                                               "user-runtime-dir@",
                                                               "app-",
                                                               "session-",
                                                               "gnome-",
                                                               "org.gnome.",
                                                               "plasma-",
                                                               "org.kde.",
                                                               "kde-",
                                                               "kwin",
                                                               "xdg-",
                                                               "gvfs-",
                                                               "at-spi-",
                                                               "evolution-",
                                                               "tracker-",
                                                               "localsearch",
                                                               "pipewire",
                                                               "wireplumber",
                                                               "pulseaudio",
                                                               "dconf",
                                                               "display-manager",
                                                               "gdm",
                                                               "sddm",
                                                               "lightdm",
                                                               "getty@",
                                                               "serial-getty@",
                                                               "autovt@",
                                                               "polkit",
                                                               "NetworkManager"};

/// Engines whose children stand for containers.
constexpr std::array<std::string_view, 4> containerEnginePrefixes{"docker", "containerd", "podman",
                                                                  "snap.docker."};

bool isUnitName(std::string_view name) {
    return name.ends_with(".service") || name.ends_with(".scope") || name.ends_with(".socket") ||
           name.ends_with(".slice");
}

template<std::size_t N>
bool startsWithAny(std::string_view text, const std::array<std::string_view, N> &prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](std::string_view prefix) { return text.starts_with(prefix); });
}

} // namespace

// Sample, a machine with both kinds of hierarchy: "1:name=systemd:/system.slice/nginx.service\n0::/"
std::string parseCgroupFile(std::string_view content) {
    std::string_view unified;
    std::string_view systemd;
    for (const std::string_view line : nonEmptyLines(content)) {
        constexpr std::string_view namedPrefix = ":name=systemd:";
        if (line.starts_with("0::"))
            unified = line.substr(3);
        else if (const std::size_t at = line.find(':');
                 at != line.npos && line.substr(at).starts_with(namedPrefix))
            systemd = line.substr(at + namedPrefix.size());
    }
    return std::string(unified.size() <= 1 && !systemd.empty() ? systemd : unified);
}

std::vector<Pid> parseCgroupProcs(std::string_view content) {
    std::vector<Pid> pids;
    for (const std::string_view line : nonEmptyLines(content))
        if (const auto pid = parseInteger<Pid>(line); pid && *pid > 0)
            pids.push_back(*pid);
    return pids;
}

std::string_view unitOfCgroup(std::string_view path) {
    const auto components = split(path, '/');
    const auto unit = std::find_if(components.rbegin(), components.rend(), isUnitName);
    if (unit == components.rend())
        return {};
    // systemd puts a "_" before a name that one of the kernel's own files could have ("memory.service").
    return unit->starts_with('_') ? unit->substr(1) : *unit;
}

bool isServiceUnit(std::string_view unit) {
    return unit.ends_with(".service") && !startsWithAny(unit, sessionUnitPrefixes) &&
           !startsWithAny(unit, containerEnginePrefixes);
}

bool isManagerCgroup(std::string_view path) {
    return unitOfCgroup(path) == "init.scope";
}

std::optional<std::string> CgroupTree::path(std::uint64_t id) {
    auto found = m_paths.find(id);
    // A group that was made anew under the same path has another id.
    struct stat status {};
    if (found != m_paths.end() &&
        (stat((m_mountPoint + found->second).c_str(), &status) != 0 || status.st_ino != id)) {
        m_paths.erase(found);
        found = m_paths.end();
    }
    if (found == m_paths.end() && m_mayWalk && !m_mountPoint.empty()) {
        walk();
        found = m_paths.find(id);
    }
    return found == m_paths.end() ? std::nullopt : std::optional(found->second);
}

std::vector<Pid> CgroupTree::processes(const std::string &path) const {
    std::string content;
    readFileAt(AT_FDCWD, (m_mountPoint + path + "/cgroup.procs").c_str(), content, 4u << 20);
    return parseCgroupProcs(content);
}

void CgroupTree::walk() {
    m_mayWalk = false;
    m_paths.clear();
    walk("", 0);
}

void CgroupTree::walk(const std::string &path, int depth) {
    constexpr int deepest = 64;
    const FileDescriptor folder = openFolderAt(AT_FDCWD, (m_mountPoint + path).c_str());
    struct stat status {};
    if (depth > deepest || fstat(folder.get(), &status) != 0)
        return;
    m_paths[status.st_ino] = path.empty() ? "/" : path;
    forEachEntry(folder.get(), [&](const char *name, ino_t) {
        // A group's own files all have a dot in their name (cgroup.procs, cpu.stat); folders may, too.
        struct stat entry {};
        if (*name != '.' && fstatat(folder.get(), name, &entry, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(entry.st_mode))
            walk(path + "/" + name, depth + 1);
    });
}

// Sample row: "cgroup2 /sys/fs/cgroup cgroup2 rw,nosuid,nodev,noexec,relatime 0 0"
std::string parseCgroupMount(std::string_view mounts) {
    for (const std::string_view line : nonEmptyLines(mounts)) {
        const auto fields = words(line, 3);
        if (fields.size() == 3 && fields[2] == "cgroup2")
            return std::string(fields[1]);
    }
    return {};
}

} // namespace tarnvale
