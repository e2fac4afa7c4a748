#pragma once

#include "store/PortEvent.h"

#include <QDate>

namespace tarnvale {

/// One run of a server, worked out from the log.
struct PortSession {
    QUuid id; ///< of the event that opened it
    std::string name;
    std::vector<std::int64_t> ports; ///< the opening event's, its lowest first
    std::optional<Instant> start;    ///< nothing when only the stop is known
    std::optional<Instant> end;      ///< nothing while it runs, or when the stop was never seen
    bool isRunning = false;          ///< no stop has matched this start

    bool operator==(const PortSession &) const = default;
};

/// The sessions of one title in a day.
struct SessionGroup {
    std::string title;
    std::vector<PortSession> sessions;

    bool operator==(const SessionGroup &) const = default;
};

/// One calendar day of the user's.
struct SessionDay {
    QDate day;
    std::vector<SessionGroup> groups; ///< in the order of their first session

    bool operator==(const SessionDay &) const = default;
};

/// One calendar day of the user's, with its events in the order they were given.
struct EventDay {
    QDate day;
    std::vector<PortEvent> events;

    bool operator==(const EventDay &) const = default;
};

/// Pairs starts and stops by name and lowest port; newest first.
[[nodiscard]] std::vector<PortSession> sessions(const std::vector<PortEvent> &events);

/// `sessions`, which come newest first, by day and by name, or by their lowest port (":3000").
[[nodiscard]] std::vector<SessionDay> groupSessions(const std::vector<PortSession> &sessions, bool byPort);

/// `events` by day.
[[nodiscard]] std::vector<EventDay> groupEventsByDay(const std::vector<PortEvent> &events);

} // namespace tarnvale
