#pragma once

#include "presentation/shared/KeyedListModel.h"
#include "store/PortSession.h"

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <vector>

namespace tarnvale {

/// The sessions of one title in a day. The lists have one entry for each session.
struct SessionGroupRow {
    QString id;
    QString day; ///< the heading that it stands under
    QString title;
    QString runCount;  ///< "2 runs"
    QStringList names; ///< what ran
    QStringList ranges;
    QStringList rangeTips; ///< the same with their dates
    QStringList lengths;   ///< empty where it isn't known
    QVariantList areRunning;
    bool isRunning = false; ///< one of them is

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<SessionGroupRow>> &roles();

    bool operator==(const SessionGroupRow &) const = default;
};

/// `days` as rows, as they look at `now`.
[[nodiscard]] std::vector<SessionGroupRow> sessionGroupRows(const std::vector<SessionDay> &days, Instant now);

/// When it ran, on the user's clock: "10:04 – 10:31", "10:04 – now", "From 10:04" when its end wasn't seen,
/// "Until 10:31" when its start wasn't. An end on another day than the start bears its date.
[[nodiscard]] QString timeRange(const PortSession &session, const QLocale &locale = QLocale());

/// How long it ran, or has run until `now`: "27m"; empty when that isn't known.
[[nodiscard]] QString sessionLength(const PortSession &session, Instant now);

} // namespace tarnvale
