#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/ListeningPort.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale {

/// A name below the process file system, such as "4242/stat", built without allocating.
class ProcPath {
public:
    /// "{pid}/{name}"; with a thread, "{pid}/task/{tid}/{name}".
    ProcPath(Pid pid, std::string_view name, Pid tid = 0);

    /// "{pid}/{folder}{number}"; with a thread as above.
    ProcPath(Pid pid, std::string_view folder, std::int32_t number, Pid tid);

    [[nodiscard]] const char *get() const { return m_text.data(); }

private:
    void append(std::string_view text);
    void append(Pid number);

    std::array<char, 64> m_text{};
    std::size_t m_length = 0;
};

/// Opens a folder for looking into it; not open when that fails.
[[nodiscard]] FileDescriptor openFolderAt(int folder, const char *path);

/// Replaces `content` by the file's first `limit` bytes; false, and nothing in it, when the file can't be
/// opened or read. Never waits for a writer.
bool readFileAt(int folder, const char *path, std::string &content, std::size_t limit);

/// The target of a symbolic link; nothing when there is none to be read.
[[nodiscard]] std::optional<std::string> readLinkAt(int folder, const char *path);

/// A process in the listing of the process file system. `entry` is the inode of its folder there, which
/// changes when the pid passes to another process.
struct ProcessEntry {
    Pid pid = 0;
    ino_t entry = 0;

    auto operator<=>(const ProcessEntry &) const = default;
};

/// Calls `visit(name, inode)` for every entry of the folder that `fd` has open, from its start; whether the
/// listing could be read.
template<typename Visit> bool forEachEntry(int fd, Visit visit);

/// The processes in `procFolder`, sorted by pid.
[[nodiscard]] std::vector<ProcessEntry> listProcesses(int procFolder);

/// A thread of `pid` other than its first. When the first has ended, the kernel shows the process's files and
/// texts only under such a thread.
[[nodiscard]] std::optional<Pid> livingThread(int procFolder, Pid pid);

} // namespace tarnvale

#include "discovery/linux/procFiles.inl"
