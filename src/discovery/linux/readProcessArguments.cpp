#include "discovery/ProcessArguments.h"

#include "discovery/linux/commandLine.h"
#include "discovery/linux/procFiles.h"
#include "discovery/text.h"

#include <fcntl.h>

namespace tarnvale::ProcessArguments {

// proc(5): cmdline holds the arguments and environ the environment, each entry ended by a NUL. Both are read
// through one open folder, which never comes to mean another process.
std::optional<Info> read(Pid pid) {
    constexpr std::size_t limit = 64u << 20; // the kernel takes at most a quarter of the stack's limit
    const std::string path = "/proc/" + std::to_string(pid);
    const FileDescriptor process = openFolderAt(AT_FDCWD, path.c_str());
    std::string arguments;
    std::string environment;
    if (pid < 1 || !process.isOpen() || !readFileAt(process.get(), "cmdline", arguments, limit) ||
        !readFileAt(process.get(), "environ", environment, limit) || arguments.empty())
        return std::nullopt;
    Info info;
    for (const std::string_view word : commandLineWords(arguments))
        info.arguments.push_back(repairedUtf8(word));
    for (const std::string_view entry : commandLineWords(environment))
        addEnvironmentEntry(entry, info.environment);
    return info;
}

} // namespace tarnvale::ProcessArguments
