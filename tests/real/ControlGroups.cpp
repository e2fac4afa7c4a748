#include "real/ControlGroups.h"

#include "discovery/text.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {

namespace {

struct Hierarchy {
    std::string folder;
    bool isUnified = false;
    bool isSystemds = false;
};

// Sample row: "cgroup /sys/fs/cgroup/systemd cgroup rw,relatime,name=systemd 0 0" (fstab(5))
std::vector<Hierarchy> hierarchies() {
    std::vector<Hierarchy> found;
    const std::string mounts = readFile("/proc/self/mounts");
    for (const std::string_view line : nonEmptyLines(mounts)) {
        const auto fields = words(line, 4);
        if (fields.size() == 4 && (fields[2] == "cgroup" || fields[2] == "cgroup2"))
            found.push_back({.folder = std::string(fields[1]),
                             .isUnified = fields[2] == "cgroup2",
                             .isSystemds = fields[3].find("name=systemd") != std::string_view::npos});
    }
    return found;
}

/// Removes a group and those below it. A group whose last process has just ended is busy for a moment.
void removeGroup(const std::string &folder) {
    std::error_code ignored;
    for (const auto &entry : std::filesystem::directory_iterator(folder, ignored))
        if (entry.is_directory(ignored))
            removeGroup(entry.path());
    eventually([&] { return rmdir(folder.c_str()) == 0 || errno != EBUSY; }, std::chrono::seconds(3));
}

} // namespace

ControlGroups::ControlGroups(std::string name) {
    bool hasUnified = false;
    for (const Hierarchy &hierarchy : hierarchies()) {
        if (!hierarchy.isUnified && !hierarchy.isSystemds)
            continue;
        const std::string folder = hierarchy.folder + "/" + name;
        if (mkdir(folder.c_str(), 0755) != 0)
            continue;
        m_folders.push_back(folder);
        hasUnified = hasUnified || hierarchy.isUnified;
    }
    if (hasUnified)
        return;
    for (const std::string &folder : m_folders)
        rmdir(folder.c_str());
    m_folders.clear();
}

ControlGroups::~ControlGroups() {
    for (const std::string &folder : m_folders)
        removeGroup(folder);
}

void removeControlGroups(const std::string &name) {
    for (const Hierarchy &hierarchy : hierarchies())
        if (std::filesystem::exists(hierarchy.folder + "/" + name))
            removeGroup(hierarchy.folder + "/" + name);
}

} // namespace tarnvale
