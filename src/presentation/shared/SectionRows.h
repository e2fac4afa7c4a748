#pragma once

#include "discovery/Instant.h"
#include "presentation/shared/KeyedListModel.h"
#include "store/PortEvent.h"
#include "store/Stack.h"

#include <QString>

#include <vector>

namespace tarnvale {

/// A stack as a row.
struct StackRow {
    QString id;
    QString name;
    QString commandCount; ///< "2 commands"
    QString toolTip;      ///< the commands, one a line

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<StackRow>> &roles();

    bool operator==(const StackRow &) const = default;
};

[[nodiscard]] StackRow stackRow(const Stack &stack);

/// An event of the activity log as a row.
struct EventRow {
    QString id;
    QString day; ///< the heading that it stands under
    QString name;
    QString ports; ///< "Started on 3000, 3001"
    QString age;   ///< "5 min. ago"
    QString date;  ///< the date and time that it happened
    bool isStart = false;

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<EventRow>> &roles();

    bool operator==(const EventRow &) const = default;
};

/// The newest `limit` of `events`, which come newest first, under their days as seen at `now`.
[[nodiscard]] std::vector<EventRow> eventRows(const std::vector<PortEvent> &events, std::size_t limit,
                                              Instant now);

/// How many days `rows` stand under.
[[nodiscard]] int dayCount(const std::vector<EventRow> &rows);

} // namespace tarnvale
