#pragma once

#include "discovery/ListeningPort.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The exact argument vector and environment of a process, word boundaries included.
namespace tarnvale::ProcessArguments {

struct Info {
    std::vector<std::string> arguments; ///< element 0 included
    std::map<std::string, std::string> environment;

    bool operator==(const Info &) const = default;
};

/// The two lists of a running process, as valid UTF-8. Nothing when it has gone, belongs to someone else, or
/// has no arguments (a kernel thread, a zombie). Any thread.
[[nodiscard]] std::optional<Info> read(Pid pid);

/// The two lists in a reply of the Mac kernel's `KERN_PROCARGS2` (sys/sysctl.h): a 32-bit count in native
/// byte order, the executable's path, padding of NULs, the arguments and the environment, each
/// NUL-terminated, up to the first empty string. Nothing when the reply holds fewer strings than the count
/// says.
[[nodiscard]] std::optional<Info> parse(std::string_view bytes);

/// Adds "KEY=value" to an environment; a text without "=" is skipped, a repeated key keeps the later value.
void addEnvironmentEntry(std::string_view entry, std::map<std::string, std::string> &environment);

} // namespace tarnvale::ProcessArguments
