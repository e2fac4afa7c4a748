#pragma once

#include "discovery/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace tarnvale {

/// A regular file, open for reading.
class RegularFile {
public:
    /// Nothing for what is missing, unreadable, or something else than a regular file: a pipe would have the
    /// reader wait, and opening a device may do things. Links are followed.
    [[nodiscard]] static std::optional<RegularFile> open(const std::string &path);

    /// In bytes, when it was opened. Some file systems tell 0 for files that have content.
    [[nodiscard]] std::uint64_t size() const { return m_size; }

    /// The bytes from `offset` on, at most `count` of them; fewer at the file's end or when reading fails.
    [[nodiscard]] std::string read(std::uint64_t offset, std::size_t count) const;

private:
    RegularFile(FileDescriptor descriptor, std::uint64_t size)
        : m_descriptor(std::move(descriptor)), m_size(size) {}

    FileDescriptor m_descriptor;
    std::uint64_t m_size;
};

/// The content of the regular file at `path`; nothing when it can't be opened or has more than `limit` bytes.
[[nodiscard]] std::optional<std::string> readRegularFile(const std::string &path, std::size_t limit);

} // namespace tarnvale
