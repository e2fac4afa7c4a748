#include "platform/loginShell.h"

#include "discovery/findTool.h"
#include "discovery/text.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace tarnvale {

namespace {

/// `name` is that of a shell, perhaps with its version: "bash", "zsh-5.9", "ksh93", "bash5".
bool isNamed(std::string_view name, std::string_view shell) {
    if (!name.starts_with(shell))
        return false;
    name.remove_prefix(shell.size());
    return name.find_first_not_of("0123456789.-") == name.npos;
}

} // namespace

std::optional<ShellKind> shellKind(std::string_view path) {
    static constexpr std::array<std::string_view, 10> posixShells{"sh",   "bash", "dash", "ash",  "ksh",
                                                                  "mksh", "oksh", "lksh", "yash", "rbash"};
    const std::string_view name = lastPathComponent(path);
    if (isNamed(name, "fish"))
        return ShellKind::fish;
    if (isNamed(name, "zsh"))
        return ShellKind::zsh;
    for (const std::string_view shell : posixShells)
        if (isNamed(name, shell))
            return ShellKind::posix;
    return std::nullopt;
}

std::vector<std::string> userShells() {
    std::vector<std::string> shells;
    if (const char *shell = std::getenv("SHELL"))
        shells.emplace_back(shell);
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        shells.emplace_back(found->pw_shell);
    return shells;
}

LoginShell loginShell(const std::vector<std::string> &paths) {
    for (const std::string &path : paths) {
        const auto kind = shellKind(path);
        if (kind && path.starts_with('/') && firstExecutable({path}))
            return {.path = path, .kind = *kind};
    }
    return {.path = "/bin/sh", .kind = ShellKind::posix};
}

} // namespace tarnvale
