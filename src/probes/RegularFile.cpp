#include "probes/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tarnvale {

std::optional<RegularFile> RegularFile::open(const std::string &path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    // It may have become something else since: so no waiting, and a second look.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return RegularFile(std::move(file), static_cast<std::uint64_t>(status.st_size));
}

std::string RegularFile::read(std::uint64_t offset, std::size_t count) const {
    std::string bytes(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        const ssize_t step = pread(m_descriptor.get(), bytes.data() + filled, count - filled,
                                   static_cast<off_t>(offset + filled));
        if (step < 0 && errno == EINTR)
            continue;
        if (step <= 0)
            break;
        filled += static_cast<std::size_t>(step);
    }
    bytes.resize(filled);
    return bytes;
}

std::optional<std::string> readRegularFile(const std::string &path, std::size_t limit) {
    const auto file = RegularFile::open(path);
    if (!file || file->size() > limit)
        return std::nullopt;
    std::string content = file->read(0, limit + 1);
    return content.size() > limit ? std::nullopt : std::optional(std::move(content));
}

} // namespace tarnvale
