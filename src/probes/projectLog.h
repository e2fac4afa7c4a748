#pragma once

#include <optional>
#include <string>

namespace tarnvale {

/// A log that a framework keeps in the project itself.
struct ProjectLog {
    std::string path;
    std::string name; ///< its path within the project, as its users know it

    bool operator==(const ProjectLog &) const = default;
};

/// The log of the project that `folder`, or the folder above it, is the root of; nothing when neither has
/// one. Reads the disk. Any thread.
[[nodiscard]] std::optional<ProjectLog> findProjectLog(const std::string &folder);

} // namespace tarnvale
