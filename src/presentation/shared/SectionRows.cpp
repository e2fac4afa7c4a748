#include "presentation/shared/SectionRows.h"

#include "discovery/text.h"
#include "presentation/dayTitle.h"
#include "presentation/plainText.h"
#include "presentation/shared/listText.h"
#include "presentation/shared/relativeTime.h"
#include "store/PortSession.h"

#include <QStringList>

#include <algorithm>
#include <set>

namespace tarnvale {

namespace {

constexpr std::size_t longestCommand = 400; // bytes

QString portList(const PortEvent &event) {
    QStringList ports{QString::number(event.port)};
    for (const std::int64_t other : event.otherPorts.value_or(std::vector<std::int64_t>()))
        ports.append(QString::number(other));
    return ports.join(QStringLiteral(", "));
}

EventRow eventRow(const PortEvent &event, const QString &day, Instant now) {
    return {.id = event.id.toString(QUuid::WithoutBraces),
            .day = day,
            .name = plainText(event.name),
            .ports =
                (event.started ? listText("Started on %1") : listText("Stopped on %1")).arg(portList(event)),
            .age = relativeTime(event.date, now),
            .date = QLocale().toString(localTime(event.date), QLocale::ShortFormat),
            .isStart = event.started};
}

} // namespace

StackRow stackRow(const Stack &stack) {
    QStringList commands;
    for (const Stack::Command &command : stack.commands)
        commands.append(plainText(firstCharacters(command.args, longestCommand)));
    const auto count = stack.commands.size();
    return {.id = stack.id.toString(QUuid::WithoutBraces),
            .name = plainText(stack.name),
            .commandCount = (count == 1 ? listText("%1 command") : listText("%1 commands")).arg(count),
            .toolTip = commands.join(QLatin1Char('\n'))};
}

std::vector<EventRow> eventRows(const std::vector<PortEvent> &events, std::size_t limit, Instant now) {
    const auto end = events.begin() + static_cast<std::ptrdiff_t>(std::min(limit, events.size()));
    const QDate today = localTime(now).date();
    std::vector<EventRow> rows;
    for (const EventDay &day : groupEventsByDay({events.begin(), end}))
        for (const PortEvent &event : day.events)
            rows.push_back(eventRow(event, dayTitle(day.day, today), now));
    return rows;
}

int dayCount(const std::vector<EventRow> &rows) {
    std::set<QString> days;
    for (const EventRow &row : rows)
        days.insert(row.day);
    return static_cast<int>(days.size());
}

const std::vector<ListRole<StackRow>> &StackRow::roles() {
    static const std::vector<ListRole<StackRow>> all{
        {"stackId", [](const StackRow &row) -> QVariant { return row.id; }},
        {"name", [](const StackRow &row) -> QVariant { return row.name; }},
        {"commandCount", [](const StackRow &row) -> QVariant { return row.commandCount; }},
        {"toolTip", [](const StackRow &row) -> QVariant { return row.toolTip; }},
    };
    return all;
}

const std::vector<ListRole<EventRow>> &EventRow::roles() {
    static const std::vector<ListRole<EventRow>> all{
        {"day", [](const EventRow &row) -> QVariant { return row.day; }},
        {"name", [](const EventRow &row) -> QVariant { return row.name; }},
        {"ports", [](const EventRow &row) -> QVariant { return row.ports; }},
        {"age", [](const EventRow &row) -> QVariant { return row.age; }},
        {"date", [](const EventRow &row) -> QVariant { return row.date; }},
        {"isStart", [](const EventRow &row) -> QVariant { return row.isStart; }},
    };
    return all;
}

} // namespace tarnvale
