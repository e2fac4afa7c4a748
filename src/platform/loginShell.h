#pragma once

#include "platform/shellLine.h"

#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

struct LoginShell {
    std::string path;
    ShellKind kind = ShellKind::posix;

    bool operator==(const LoginShell &) const = default;
};

/// The kind of the shell at `path`, by its name; nothing for what isn't known to be spoken to as here, such
/// as csh, or `nologin`.
[[nodiscard]] std::optional<ShellKind> shellKind(std::string_view path);

/// What the user has for a shell: `$SHELL`, then the password database's.
[[nodiscard]] std::vector<std::string> userShells();

/// The first of `paths` that is absolute, can be executed and is known; else "/bin/sh".
[[nodiscard]] LoginShell loginShell(const std::vector<std::string> &paths = userShells());

} // namespace tarnvale
