#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// The parts of a desktop file that tell which program it starts (Desktop Entry Specification).
struct DesktopEntry {
    std::string program; ///< the first word of `Exec`, unquoted, `env` and its settings skipped
    bool isHidden = false; ///< as good as deleted
    bool isShown = true;   ///< in menus

    bool operator==(const DesktopEntry &) const = default;
};

/// The main group of a desktop file; nothing when it is no application's or lacks `Exec`.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view content);

/// The ids under which the application of a control group may have its desktop file, likeliest first: what
/// launchers, flatpak and snap put into the names of units ("app-gnome-org.gnome.Terminal-4242.scope"). Empty
/// for a group that belongs to no application.
[[nodiscard]] std::vector<std::string> applicationIds(std::string_view cgroup);

/// The folders of desktop files by XDG_DATA_HOME and XDG_DATA_DIRS, the user's own first, with those of
/// flatpak and snap.
[[nodiscard]] std::vector<std::string> applicationFolders();

/// The desktop files of this machine. Read when first asked for, and again when one of their folders changes.
class DesktopEntries {
public:
    explicit DesktopEntries(std::vector<std::string> folders)
        : m_folders(std::move(folders)) {}

    /// The path of the desktop file with this id, without ".desktop".
    [[nodiscard]] std::optional<std::string> findById(const std::string &id);

    /// The path of the desktop file that starts `executable`, an absolute path without links. Shells and other
    /// runtimes have none, whatever entries start them.
    [[nodiscard]] std::optional<std::string> findByExecutable(const std::string &executable);

    /// From now on the folders may have changed.
    void beginScan() { m_isChecked = false; }

private:
    void forgetIfChanged();
    void readAll();
    void read(const std::string &folder);

    std::vector<std::string> m_folders;
    std::vector<timespec> m_changed;
    std::unordered_map<std::string, std::optional<std::string>> m_byId; ///< answers given so far
    std::unordered_map<std::string, std::string> m_byExecutable;
    bool m_isRead = false;
    bool m_isChecked = false;
};

} // namespace tarnvale
