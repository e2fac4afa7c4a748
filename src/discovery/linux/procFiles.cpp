#include "discovery/linux/procFiles.h"

#include "discovery/text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <fcntl.h>

namespace tarnvale {

ProcPath::ProcPath(Pid pid, std::string_view name, Pid tid) {
    append(pid);
    if (tid != 0) {
        append("/task/");
        append(tid);
    }
    append("/");
    append(name);
}

ProcPath::ProcPath(Pid pid, std::string_view folder, std::int32_t number, Pid tid)
    : ProcPath(pid, folder, tid) {
    append(number);
}

void ProcPath::append(std::string_view text) {
    const std::size_t count = std::min(text.size(), m_text.size() - 1 - m_length);
    std::copy_n(text.begin(), count, m_text.begin() + static_cast<std::ptrdiff_t>(m_length));
    m_length += count;
}

void ProcPath::append(Pid number) {
    char *const end = m_text.data() + m_text.size() - 1;
    m_length =
        static_cast<std::size_t>(std::to_chars(m_text.data() + m_length, end, number).ptr - m_text.data());
}

FileDescriptor openFolderAt(int folder, const char *path) {
    return FileDescriptor(openat(folder, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

bool readFileAt(int folder, const char *path, std::string &content, std::size_t limit) {
    content.clear();
    const FileDescriptor file(openat(folder, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen())
        return false;
    constexpr std::size_t firstSize = 4096;
    std::size_t filled = 0;
    content.resize(std::min(std::max(content.capacity(), firstSize), limit));
    for (;;) {
        const ssize_t count = read(file.get(), content.data() + filled, content.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            content.clear();
            return false;
        }
        filled += static_cast<std::size_t>(count);
        if (count == 0 || filled == limit)
            break;
        if (filled == content.size())
            content.resize(std::min(2 * content.size(), limit));
    }
    content.resize(filled);
    return true;
}

std::optional<std::string> readLinkAt(int folder, const char *path) {
    std::array<char, PATH_MAX> target;
    const ssize_t length = readlinkat(folder, path, target.data(), target.size());
    if (length < 0)
        return std::nullopt;
    return std::string(target.data(), static_cast<std::size_t>(length));
}

std::vector<ProcessEntry> listProcesses(int procFolder) {
    std::vector<ProcessEntry> processes;
    forEachEntry(procFolder, [&](const char *name, ino_t inode) {
        if (*name < '1' || *name > '9')
            return;
        if (const auto pid = parseInteger<Pid>(name))
            processes.push_back({*pid, inode});
    });
    std::sort(processes.begin(), processes.end());
    return processes;
}

std::optional<Pid> livingThread(int procFolder, Pid pid) {
    const FileDescriptor threads = openFolderAt(procFolder, ProcPath(pid, "task").get());
    std::optional<Pid> found;
    forEachEntry(threads.get(), [&](const char *name, ino_t) {
        const auto thread = parseInteger<Pid>(name);
        if (!found && thread && *thread != pid)
            found = thread;
    });
    return found;
}

} // namespace tarnvale
