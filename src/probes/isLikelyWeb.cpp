#include "probes/isLikelyWeb.h"

#include "discovery/text.h"

#include <algorithm>
#include <array>

namespace tarnvale {

bool isLikelyWeb(const ListeningPort &port) {
    static constexpr std::array<std::int64_t, 8> otherPorts{3306,  33060, 5432, 6379,
                                                            27017, 11211, 5672, 5037};
    static constexpr std::array<std::string_view, 12> otherServers{
        "mysql",    "mariadb",    "postgres", "redis", "valkey",   "mongo",
        "memcache", "clickhouse", "php-fpm",  "adb",   "rabbitmq", "sshd"};
    if (std::ranges::find(otherPorts, port.port) != otherPorts.end())
        return false;
    const std::string names = lowercased(port.command + " " + port.container.value_or(""));
    return std::ranges::none_of(otherServers,
                                [&](std::string_view server) { return names.find(server) != names.npos; });
}

} // namespace tarnvale
