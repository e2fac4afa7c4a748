#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// The shell command that makes `executable`, an absolute path, the command-line tool `tarnctl`. It is for
/// the user to read and to paste; nothing runs it.
[[nodiscard]] std::string installCommand(std::string_view executable);

} // namespace tarnvale
