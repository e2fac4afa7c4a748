#pragma once

#include "discovery/Machine.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <tuple>
#include <vector>

namespace tarnvale {

/// The last answer of docker, asked for again when the set of proxies has changed or a minute has passed, or
/// ten seconds while a proxy is still without its container.
class ContainerAnswer {
public:
    /// What a set of proxies is known by: the pid, start and port of each.
    using Key = std::vector<std::tuple<Pid, std::optional<Instant>, std::int64_t>>;

    /// The containers at `now`, the time since boot; `ask` asks docker.
    const ContainerMap &get(Key key, std::chrono::nanoseconds now, const std::function<ContainerMap()> &ask);

private:
    Key m_key;
    std::chrono::nanoseconds m_expires{};
    ContainerMap m_containers;
};

} // namespace tarnvale
