#pragma once

#include "discovery/FileDescriptor.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <vector>

namespace tarnvale {

/// One TCP socket in LISTEN state.
struct Listener {
    std::uint16_t port = 0;
    bool isLoopback = false; ///< bound to 127.0.0.0/8, ::1 or a mapped loopback address
    std::uint64_t inode = 0; ///< ties the socket to the processes that hold it; 0 for one of the kernel's own
    std::optional<std::uint64_t>
        cgroup; ///< id of the control group in which it was made; older kernels lack it

    bool operator==(const Listener &) const = default;
};

/// What one datagram of a dump told.
enum class DumpState {
    more,        ///< the dump goes on
    done,        ///< that was its end
    interrupted, ///< done, but the table changed while it was read: rows may lack or be doubled
};

/// Why a dump can't be used.
enum class DumpError {
    refused,   ///< the kernel answered with an error
    malformed, ///< lengths that don't fit
};

/// Reads one datagram of the answer to an `inet_diag` dump numbered `sequence` (sock_diag(7), netlink(7),
/// linux/inet_diag.h), and appends its listeners. Messages of other dumps are skipped; so are attributes that
/// aren't known.
[[nodiscard]] std::expected<DumpState, DumpError> parseSocketDiag(std::span<const std::byte> datagram,
                                                                  std::uint32_t sequence,
                                                                  std::vector<Listener> &listeners);

/// Asks the kernel for listening sockets over one netlink socket that it keeps.
class SocketDiag {
public:
    /// The listeners of both address families, IPv4 first, in the kernel's order. Nothing when the kernel
    /// refuses netlink or its answer can't be used; never a part of the list.
    [[nodiscard]] std::optional<std::vector<Listener>> listeners();

private:
    bool open();
    std::expected<void, DumpError> dump(std::uint8_t family, std::vector<Listener> &listeners);
    std::expected<DumpState, DumpError> dumpOnce(std::uint8_t family, std::vector<Listener> &listeners);
    bool request(std::uint8_t family);

    FileDescriptor m_socket;
    std::uint32_t m_sequence = 0;
    std::vector<std::byte> m_buffer;
};

} // namespace tarnvale
