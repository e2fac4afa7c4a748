#include "discovery/linux/parseDesktopEntry.h"

#include "discovery/text.h"

#include <algorithm>

namespace tarnvale {

namespace {

/// Cuts the first argument off an `Exec` value: double quotes group, a backslash keeps what follows.
std::string takeArgument(std::string_view &exec) {
    exec.remove_prefix(std::min(exec.find_first_not_of(' '), exec.size()));
    std::string argument;
    bool isQuoted = false;
    while (!exec.empty() && (isQuoted || exec.front() != ' ')) {
        if (exec.front() == '\\' && exec.size() > 1)
            exec.remove_prefix(1);
        else if (exec.front() == '"') {
            isQuoted = !isQuoted;
            exec.remove_prefix(1);
            continue;
        }
        argument += exec.front();
        exec.remove_prefix(1);
    }
    return argument;
}

std::string programOf(std::string_view exec) {
    std::string program = takeArgument(exec);
    if (lastPathComponent(program) == "env")
        do
            program = takeArgument(exec);
        while (program.find('=') != program.npos);
    return program;
}

} // namespace

// Sample:
//   [Desktop Entry]
//   Type=Application
//   Name=Editor
//   Exec="/opt/my editor/editor" --new-window %F
std::optional<DesktopEntry> parseDesktopEntry(std::string_view content) {
    DesktopEntry entry;
    bool isMainGroup = false;
    bool isApplication = false;
    for (std::string_view line : nonEmptyLines(content)) {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.starts_with('['))
            isMainGroup = line == "[Desktop Entry]";
        const std::size_t equals = line.find('=');
        if (!isMainGroup || equals == line.npos)
            continue;
        const std::string_view key = line.substr(0, line.find_last_not_of(' ', equals - 1) + 1);
        std::string_view value = line.substr(equals + 1);
        value.remove_prefix(leadingWhitespace(value));
        if (key == "Type")
            isApplication = value == "Application";
        else if (key == "Exec")
            entry.program = programOf(value);
        else if (key == "Hidden")
            entry.isHidden = value == "true";
        else if (key == "NoDisplay")
            entry.isShown = value != "true";
    }
    return isApplication && !entry.program.empty() ? std::optional(entry) : std::nullopt;
}

} // namespace tarnvale
