#pragma once

#include "discovery/Instant.h"
#include "discovery/ListeningPort.h"

#include <QUuid>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A server that started or stopped, as one scan saw it differ from the one before.
struct PortEvent {
    QUuid id;
    Instant date;
    std::int64_t port = 0;                               ///< the lowest one
    std::optional<std::vector<std::int64_t>> otherPorts; ///< the further ones, ascending; old records lack it
    std::optional<Pid> pid;                              ///< old records lack it
    std::string name;                                    ///< the port's title at that moment
    bool started = false;

    bool operator==(const PortEvent &) const = default;
};

/// How many events are kept.
inline constexpr std::size_t mostEvents = 100;

/// `events` (newest first) brought up to date at `now` with the differences between two scans; nothing when
/// there are none. What hides by default (see `isDevPort`) is no event, nor is a server that came back on its
/// port between the scans under another pid.
[[nodiscard]] std::optional<std::vector<PortEvent>> withChanges(std::vector<PortEvent> events,
                                                                const std::vector<ListeningPort> &previous,
                                                                const std::vector<ListeningPort> &ports,
                                                                Instant now);

} // namespace tarnvale
