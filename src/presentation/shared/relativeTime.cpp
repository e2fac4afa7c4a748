#include "presentation/shared/relativeTime.h"

#include "presentation/shared/listText.h"

namespace tarnvale {

namespace {

QString earlierDay(qint64 days) {
    constexpr qint64 week = 7;
    constexpr qint64 month = 30;
    constexpr qint64 year = 365;
    if (days == 1)
        return listText("yesterday");
    if (days < week)
        return listText("%1 days ago").arg(days);
    if (days < 2 * week)
        return listText("last wk.");
    if (days < month)
        return listText("%1 wk. ago").arg(days / week);
    if (days < 2 * month)
        return listText("last mo.");
    if (days < year)
        return listText("%1 mo. ago").arg(days / month);
    return days < 2 * year ? listText("last yr.") : listText("%1 yr. ago").arg(days / year);
}

} // namespace

QDateTime localTime(Instant instant) {
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}

QString relativeTime(Instant date, Instant now) {
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    const qint64 seconds = std::chrono::duration_cast<std::chrono::seconds>(now - date).count();
    if (seconds < 1)
        return listText("now");
    if (seconds < minute)
        return listText("%1 sec. ago").arg(seconds);
    if (seconds < hour)
        return listText("%1 min. ago").arg(seconds / minute);
    const qint64 days = localTime(date).date().daysTo(localTime(now).date());
    if (seconds < 24 * hour || days < 1) // last night isn't a day ago
        return listText("%1 hr. ago").arg(seconds / hour);
    return earlierDay(days);
}

} // namespace tarnvale
