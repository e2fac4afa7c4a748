#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace tarnvale {

/// The folders of desktop files by XDG_DATA_HOME and XDG_DATA_DIRS, the user's own first, with those of
/// flatpak and snap.
[[nodiscard]] std::vector<std::string> applicationFolders();

/// The desktop files of this machine. Read when first asked for, and again when one of their folders changes.
class DesktopEntries {
public:
    explicit DesktopEntries(std::vector<std::string> folders) : m_folders(std::move(folders)) {}

    /// The path of the desktop file with this id, without ".desktop".
    [[nodiscard]] std::optional<std::string> findById(const std::string &id);

    /// The path of the desktop file that starts `executable`, an absolute path without links. Shells and
    /// other runtimes have none, whatever entries start them.
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
