#pragma once

#include "discovery/ListeningPort.h"

#include <algorithm>
#include <vector>

namespace tarnvale {

/// The first of `ports` that is on port `number`; null when none is.
[[nodiscard]] inline const ListeningPort *holderOf(std::int64_t number,
                                                   const std::vector<ListeningPort> &ports) {
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const ListeningPort &port) { return port.port == number; });
    return found == ports.end() ? nullptr : &*found;
}

} // namespace tarnvale
