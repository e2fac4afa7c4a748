#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

namespace tarnvale {

/// The heading of `day`: "Today", "Yesterday", or the date as `locale` writes it, with the whole weekday, the
/// short month and no year: "Saturday, Mar 1", "samedi 1 mars". Both days are of the user's own time zone.
[[nodiscard]] QString dayTitle(const QDate &day, const QDate &today, const QLocale &locale = QLocale());

/// A locale's long date pattern (QLocale::dateFormat) with the short month and without the year; with a
/// weekday, even where the locale itself writes none.
[[nodiscard]] QString dayPattern(const QString &longPattern);

} // namespace tarnvale
