#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// The first of `paths` that is a file this user may execute.
[[nodiscard]] std::optional<std::string> firstExecutable(const std::vector<std::string> &paths);

/// The program `name` in the absolute folders of PATH, or in the usual ones when that isn't set.
[[nodiscard]] std::optional<std::string> findInPath(const std::string &name);

/// The user's home folder: `$HOME`, else the one of the password database, else "/".
[[nodiscard]] std::string homeFolder();

/// The folders in which this kind of system keeps outside tools (docker, brew, the tunnels), beyond those
/// that are searched everywhere, best first.
[[nodiscard]] std::vector<std::string> systemToolFolders(const std::string &home);

} // namespace tarnvale
