#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// One IPv4 address of a network interface.
struct InterfaceAddress {
    std::string name;    ///< "en0", "wlp2s0"
    std::string address; ///< in dotted form
    unsigned flags = 0;  ///< `IFF_UP` and its kin (netdevice(7))
    std::optional<std::uint32_t>
        defaultRouteMetric; ///< of its default route, when it has one; less is better
};

/// Those of `all` that others on a network could use: of interfaces that are up, without loopback and
/// link-local addresses. In the same order.
[[nodiscard]] std::vector<InterfaceAddress> reachableAddresses(const std::vector<InterfaceAddress> &all);

/// The address of "en0", else of the first interface named "en…", "eth…" or "wl…", in this order of kinds,
/// else the first of all; nothing when there is none.
[[nodiscard]] std::optional<std::string> preferredByName(const std::vector<InterfaceAddress> &reachable);

/// The address under which this machine is most likely known on the local network.
///
/// A network card counts before anything else, and a container's bridge or a tunnel only when nothing else is
/// up. Among equals the one with the best default route is taken, then `preferredByName` decides.
[[nodiscard]] std::optional<std::string> chooseLanAddress(const std::vector<InterfaceAddress> &all);

} // namespace tarnvale
