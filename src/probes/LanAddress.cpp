#include "probes/LanAddress.h"

#include "probes/chooseLanAddress.h"
#include "probes/readDefaultRoutes.h"

#include <array>
#include <ifaddrs.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace tarnvale {

namespace {

std::optional<std::string> textOf(const sockaddr &address) {
    std::array<char, NI_MAXHOST> text{};
    if (getnameinfo(&address, sizeof(sockaddr_in), text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) != 0)
        return std::nullopt;
    return text.data();
}

/// In the order in which the system lists them.
std::vector<InterfaceAddress> interfaceAddresses() {
    ifaddrs *listed = nullptr;
    if (getifaddrs(&listed) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> list(listed, freeifaddrs);
    const DefaultRoutes routes = readDefaultRoutes();
    std::vector<InterfaceAddress> result;
    for (const ifaddrs *entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        InterfaceAddress found{.name = entry->ifa_name, .flags = entry->ifa_flags};
        if (const auto route = routes.find(found.name); route != routes.end())
            found.defaultRouteMetric = route->second;
        if (const auto text = textOf(*entry->ifa_addr)) {
            found.address = *text;
            result.push_back(found);
        }
    }
    return result;
}

} // namespace

std::optional<std::string> lanAddress() {
    return chooseLanAddress(interfaceAddresses());
}

std::optional<std::string> lanURL(std::int64_t port) {
    const auto address = lanAddress();
    return address ? std::optional("http://" + *address + ":" + std::to_string(port)) : std::nullopt;
}

} // namespace tarnvale
