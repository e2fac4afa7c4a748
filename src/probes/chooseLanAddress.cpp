#include "probes/chooseLanAddress.h"

#include <algorithm>
#include <array>
#include <net/if.h>
#include <string_view>

namespace tarnvale {

namespace {

using Addresses = std::vector<InterfaceAddress>;

constexpr std::array<std::string_view, 3> cardPrefixes{"en", "eth", "wl"};

/// Bridges and tunnels that container engines, virtual machines and private networks make.
constexpr std::array<std::string_view, 32> virtualPrefixes{
    "awdl",     "br-",  "bridge", "cali",  "cilium",    "cni", "docker", "dummy",
    "flannel",  "ham",  "ifb",    "ipsec", "kube",      "llw", "lxc",    "lxd",
    "nordlynx", "ovs",  "podman", "ppp",   "tailscale", "tap", "tun",    "utun",
    "vboxnet",  "veth", "virbr",  "vmnet", "vnet",      "vpn", "wg",     "zt"};

template<typename Prefixes> bool startsWithAny(std::string_view name, const Prefixes &prefixes) {
    return std::ranges::any_of(prefixes, [&](std::string_view prefix) { return name.starts_with(prefix); });
}

bool isCard(const InterfaceAddress &entry) {
    return startsWithAny(entry.name, cardPrefixes);
}

bool isPhysical(const InterfaceAddress &entry) {
    return (entry.flags & IFF_POINTOPOINT) == 0 && !startsWithAny(entry.name, virtualPrefixes);
}

/// Those that `isGood`, or all when none is.
template<typename Rule> Addresses narrowed(const Addresses &all, Rule isGood) {
    Addresses good;
    std::ranges::copy_if(all, std::back_inserter(good), isGood);
    return good.empty() ? all : good;
}

Addresses onBestRoute(const Addresses &all) {
    std::optional<std::uint32_t> best;
    for (const InterfaceAddress &entry : all)
        if (entry.defaultRouteMetric && (!best || *entry.defaultRouteMetric < *best))
            best = entry.defaultRouteMetric;
    return narrowed(all, [&](const auto &entry) { return best && entry.defaultRouteMetric == best; });
}

} // namespace

std::vector<InterfaceAddress> reachableAddresses(const std::vector<InterfaceAddress> &all) {
    Addresses reachable;
    std::ranges::copy_if(all, std::back_inserter(reachable), [](const InterfaceAddress &entry) {
        return (entry.flags & (IFF_UP | IFF_LOOPBACK)) == IFF_UP && !entry.address.starts_with("169.254.");
    });
    return reachable;
}

std::optional<std::string> preferredByName(const std::vector<InterfaceAddress> &reachable) {
    if (reachable.empty())
        return std::nullopt;
    auto found = std::ranges::find(reachable, "en0", &InterfaceAddress::name);
    for (const std::string_view prefix : cardPrefixes)
        if (found == reachable.end())
            found = std::ranges::find_if(reachable,
                                         [&](const auto &entry) { return entry.name.starts_with(prefix); });
    return found == reachable.end() ? reachable.front().address : found->address;
}

std::optional<std::string> chooseLanAddress(const std::vector<InterfaceAddress> &all) {
    const Addresses physical = narrowed(reachableAddresses(all), isPhysical);
    return preferredByName(onBestRoute(narrowed(physical, isCard)));
}

} // namespace tarnvale
