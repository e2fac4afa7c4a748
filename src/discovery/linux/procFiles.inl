#pragma once

#include <cstring>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnvale {

template<typename Visit> bool forEachEntry(int fd, Visit visit) {
    // getdents64(2): records of inode, offset, length, type and a NUL-terminated name.
    struct Header {
        std::uint64_t inode;
        std::int64_t offset;
        std::uint16_t length;
        std::uint8_t type;
    };
    constexpr std::size_t nameOffset = 19;
    alignas(8) std::array<char, 32u << 10> buffer;
    if (lseek(fd, 0, SEEK_SET) < 0)
        return false;
    for (;;) {
        const long filled = syscall(SYS_getdents64, fd, buffer.data(), buffer.size());
        if (filled <= 0)
            return filled == 0;
        for (std::size_t at = 0; at < static_cast<std::size_t>(filled);) {
            Header header;
            std::memcpy(&header, buffer.data() + at, nameOffset);
            visit(buffer.data() + at + nameOffset, static_cast<ino_t>(header.inode));
            at += header.length;
        }
    }
}

} // namespace tarnvale
