#include "discovery/linux/SocketDiag.h"

#include "fuzz/check.h"

#include <linux/inet_diag.h>
#include <linux/netlink.h>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto datagram = std::as_bytes(std::span(data, size));
    for (const std::uint32_t sequence : {0u, 1u, 0x01010101u}) {
        std::vector<Listener> listeners{{.port = 1, .isLoopback = true, .inode = 2, .cgroup = 3}};
        const Listener before = listeners.front();
        const auto state = parseSocketDiag(datagram, sequence, listeners);
        check(listeners.front() == before, "listeners are only added");
        check((listeners.size() - 1) * (sizeof(nlmsghdr) + sizeof(inet_diag_msg)) <= size,
              "a listener takes a whole message");
        check(state || state.error() == DumpError::refused || state.error() == DumpError::malformed,
              "an error is one of two");
        check(!state || size >= sizeof(nlmsghdr) || *state == DumpState::more,
              "nothing ends without a message");
    }
    return 0;
}
