#include "discovery/Machine.h"

namespace tarnvale {

Instant Machine::now() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

bool isSameProcess(const ListeningPort &port, const ProcessDetails &details, Instant now) {
    constexpr std::chrono::seconds tolerance(3);
    return port.args && port.startedAt && *port.args == details.args &&
           std::chrono::abs(startOf(details, now) - *port.startedAt) < tolerance;
}

} // namespace tarnvale
