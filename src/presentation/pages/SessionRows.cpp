#include "presentation/pages/SessionRows.h"

#include "discovery/formatUptime.h"
#include "discovery/text.h"
#include "presentation/dayTitle.h"
#include "presentation/plainText.h"
#include "presentation/shared/relativeTime.h"

#include <QCoreApplication>

namespace tarnvale {

namespace {

constexpr std::size_t longestName = 400; // characters

QString activityText(const char *text) {
    return QCoreApplication::translate("ActivityView", text);
}

QString nameText(const std::string &name) {
    return plainText(firstCharacters(repairedUtf8(name), longestName));
}

/// `from` and `to` as texts, one of which may be missing.
QString rangeText(const QString &from, const QString &to, bool isRunning) {
    if (isRunning)
        return activityText("%1 – now").arg(from);
    if (from.isEmpty())
        return activityText("Until %1").arg(to);
    return to.isEmpty() ? activityText("From %1").arg(from) : activityText("%1 – %2").arg(from, to);
}

QString rangeWithDates(const PortSession &session, const QLocale &locale) {
    const auto text = [&](const std::optional<Instant> &time) {
        return time ? locale.toString(localTime(*time), QLocale::ShortFormat) : QString();
    };
    return session.start || session.end ? rangeText(text(session.start), text(session.end), session.isRunning)
                                        : QString();
}

SessionGroupRow groupRow(const SessionGroup &group, const QDate &day, Instant now) {
    const QLocale locale;
    const auto count = group.sessions.size();
    SessionGroupRow row{
        .id = day.toString(Qt::ISODate) + QLatin1Char('|') + QString::fromStdString(group.title),
        .day = dayTitle(day, localTime(now).date()),
        .title = nameText(group.title),
        .runCount = (count == 1 ? activityText("%1 run") : activityText("%1 runs")).arg(count)};
    for (const PortSession &session : group.sessions) {
        row.names.append(nameText(session.name));
        row.ranges.append(timeRange(session, locale));
        row.rangeTips.append(rangeWithDates(session, locale));
        row.lengths.append(sessionLength(session, now));
        row.areRunning.append(session.isRunning);
        row.isRunning = row.isRunning || session.isRunning;
    }
    return row;
}

} // namespace

QString timeRange(const PortSession &session, const QLocale &locale) {
    if (!session.start && !session.end)
        return {};
    const auto time = [&](Instant instant) {
        return locale.toString(localTime(instant).time(), QLocale::ShortFormat);
    };
    const QString from = session.start ? time(*session.start) : QString();
    if (!session.end)
        return rangeText(from, {}, session.isRunning);
    const bool isOtherDay =
        session.start && localTime(*session.start).date() != localTime(*session.end).date();
    return rangeText(from,
                     isOtherDay ? locale.toString(localTime(*session.end), QLocale::ShortFormat)
                                : time(*session.end),
                     session.isRunning);
}

QString sessionLength(const PortSession &session, Instant now) {
    const std::optional<Instant> end = session.isRunning ? now : session.end;
    if (!session.start || !end)
        return {};
    return QString::fromStdString(formatUptime(std::chrono::duration<double>(*end - *session.start).count()));
}

std::vector<SessionGroupRow> sessionGroupRows(const std::vector<SessionDay> &days, Instant now) {
    std::vector<SessionGroupRow> rows;
    for (const SessionDay &day : days)
        for (const SessionGroup &group : day.groups)
            rows.push_back(groupRow(group, day.day, now));
    return rows;
}

const std::vector<ListRole<SessionGroupRow>> &SessionGroupRow::roles() {
    static const std::vector<ListRole<SessionGroupRow>> all{
        {"day", [](const SessionGroupRow &row) -> QVariant { return row.day; }},
        {"title", [](const SessionGroupRow &row) -> QVariant { return row.title; }},
        {"runCount", [](const SessionGroupRow &row) -> QVariant { return row.runCount; }},
        {"names", [](const SessionGroupRow &row) -> QVariant { return row.names; }},
        {"ranges", [](const SessionGroupRow &row) -> QVariant { return row.ranges; }},
        {"rangeTips", [](const SessionGroupRow &row) -> QVariant { return row.rangeTips; }},
        {"lengths", [](const SessionGroupRow &row) -> QVariant { return row.lengths; }},
        {"areRunning", [](const SessionGroupRow &row) -> QVariant { return row.areRunning; }},
        {"isRunning", [](const SessionGroupRow &row) -> QVariant { return row.isRunning; }},
    };
    return all;
}

} // namespace tarnvale
