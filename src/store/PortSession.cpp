#include "store/PortSession.h"

#include <QDateTime>

#include <algorithm>
#include <map>
#include <utility>

namespace tarnvale {

namespace {

constexpr Instant distantPast = Instant::min();

Instant orderOf(const PortSession &session) {
    return session.start ? *session.start : session.end.value_or(distantPast);
}

QDate dayOf(Instant time) {
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count()).date();
}

PortSession sessionOf(const PortEvent &event) {
    PortSession session{.id = event.id, .name = event.name, .ports = {event.port}, .start = {}, .end = {}};
    if (event.otherPorts)
        session.ports.insert(session.ports.end(), event.otherPorts->begin(), event.otherPorts->end());
    return session;
}

/// The last of `days` when it is `day`, else a new one behind it.
template<typename Day> Day &dayAtEnd(std::vector<Day> &days, QDate day) {
    if (days.empty() || days.back().day != day)
        days.push_back({.day = day});
    return days.back();
}

} // namespace

std::vector<PortSession> sessions(const std::vector<PortEvent> &events) {
    std::vector<const PortEvent *> byDate;
    byDate.reserve(events.size());
    for (const PortEvent &event : events)
        byDate.push_back(&event);
    std::stable_sort(byDate.begin(), byDate.end(),
                     [](const PortEvent *a, const PortEvent *b) { return a->date < b->date; });

    std::vector<PortSession> result;
    std::map<std::pair<std::string, std::int64_t>, std::size_t> open;
    for (const PortEvent *event : byDate) {
        const std::pair key(event->name, event->port);
        const auto found = open.find(key);
        if (event->started) {
            open[key] = result.size();
            result.push_back(sessionOf(*event));
            result.back().start = event->date;
        } else if (found != open.end()) {
            result[found->second].end = event->date;
            open.erase(found);
        } else {
            result.push_back(sessionOf(*event));
            result.back().end = event->date;
        }
    }
    for (const auto &[key, index] : open)
        result[index].isRunning = true;
    std::stable_sort(result.begin(), result.end(),
                     [](const PortSession &a, const PortSession &b) { return orderOf(a) > orderOf(b); });
    return result;
}

std::vector<SessionDay> groupSessions(const std::vector<PortSession> &sessions, bool byPort) {
    std::vector<SessionDay> days;
    for (const PortSession &session : sessions) {
        const std::int64_t port = session.ports.empty() ? 0 : session.ports.front();
        const std::string title = byPort ? std::string(1, ':').append(std::to_string(port)) : session.name;
        auto &groups = dayAtEnd(days, dayOf(orderOf(session))).groups;
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const SessionGroup &other) { return other.title == title; });
        if (group == groups.end())
            group = groups.insert(group, SessionGroup{.title = title, .sessions = {}});
        group->sessions.push_back(session);
    }
    return days;
}

std::vector<EventDay> groupEventsByDay(const std::vector<PortEvent> &events) {
    std::vector<EventDay> days;
    for (const PortEvent &event : events)
        dayAtEnd(days, dayOf(event.date)).events.push_back(event);
    return days;
}

} // namespace tarnvale
