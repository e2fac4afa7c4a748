#pragma once

#include "presentation/PortGroup.h"

#include <cstdint>
#include <initializer_list>
#include <set>

namespace tarnvale {

/// A web test that holds for just these port numbers.
inline WebTest webServers(std::initializer_list<std::int64_t> ports) {
    return [ports = std::set<std::int64_t>(ports)](const ListeningPort &port) {
        return ports.contains(port.port);
    };
}

} // namespace tarnvale
