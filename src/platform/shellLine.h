#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// The kinds of shells that have to be spoken to differently.
enum class ShellKind : std::uint8_t { posix, zsh, fish };

/// What a shell is told to do for a command that the user typed.
struct ShellLine {
    std::string text;
    bool replacesShell = false; ///< the command's process is the shell's own

    bool operator==(const ShellLine &) const = default;
};

/// A plain command with `exec` before its first word, so that it replaces the shell. What only a shell can
/// run ("cd web && npm start", "time make") stays as it is, with the shell as its parent.
///
/// Variables set for the command alone ("PORT=3000 npm start") stay before `exec`, which takes none; for
/// fish, which loses them there, `env` sets them.
[[nodiscard]] ShellLine shellLine(std::string_view command, ShellKind kind);

/// The descriptor on which an interactive shell of this kind finds the log: it complains on its standard
/// error that it has no terminal, so that one leads nowhere until the user's own files have been read.
/// STDERR_FILENO for a kind that doesn't complain.
[[nodiscard]] int logDescriptor(ShellKind kind);

/// The arguments for an interactive login shell called `name` that runs `line`, with its errors in the log.
[[nodiscard]] std::vector<std::string> shellArguments(const ShellLine &line, ShellKind kind,
                                                      const std::string &name);

} // namespace tarnvale
