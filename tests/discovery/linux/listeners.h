#pragma once

#include "discovery/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace tarnvale {

/// A listening socket of the test's own, on a port that the kernel chose.
struct OpenListener {
    FileDescriptor socket;
    std::uint16_t port = 0;
    std::uint64_t inode = 0;

    [[nodiscard]] bool isOpen() const { return socket.isOpen(); }
};

/// What `openListener` may do beyond the usual.
struct ListenerSetup {
    std::uint16_t port = 0;
    bool sharesPort = false; ///< SO_REUSEPORT
    bool isDualStack = false;
    int protocol = 0;
};

/// Listens on `address`, either family; not open, with `errno` set, when that fails.
[[nodiscard]] OpenListener openListener(const std::string &address, const ListenerSetup &setup = {});

} // namespace tarnvale
