// QLocale knows whole patterns only ("dddd, d. MMMM yyyy", "yyyy年M月d日dddd"), so the pattern without the
// year is made from the long one. It is taken apart into fields and the texts between them; the year goes,
// and with it the texts beside it ("yyyy 'г'.", "MMMM 'de' yyyy"), except where one parts it from the
// weekday.

#include "presentation/dayTitle.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

namespace tarnvale {

namespace {

/// A run of one pattern letter, or a text between two such.
struct Piece {
    QString text;
    QChar letter; ///< null for a text

    [[nodiscard]] bool isWeekday() const { return text == u"dddd"; }
};

/// The pieces of a date pattern in Qt's notation (QLocale::dateFormat).
std::vector<Piece> piecesOf(const QString &pattern) {
    std::vector<Piece> pieces;
    bool isQuoted = false;
    for (const QChar c : pattern) {
        if (c == u'\'')
            isQuoted = !isQuoted;
        const QChar letter = !isQuoted && QStringView(u"dMy").contains(c) ? c : QChar();
        if (pieces.empty() || pieces.back().letter != letter)
            pieces.push_back({QString(), letter});
        pieces.back().text += c;
    }
    return pieces;
}

void removeYear(std::vector<Piece> &pieces) {
    const auto isYear = [](const Piece &piece) { return piece.letter == u'y'; };
    const auto year = std::find_if(pieces.begin(), pieces.end(), isYear) - pieces.begin();
    const auto size = std::ssize(pieces);
    if (year == size)
        return;
    const auto at = [&](std::ptrdiff_t i) { return i >= 0 && i < size ? pieces.data() + i : nullptr; };
    const auto goesToo = [&](const Piece *text, const Piece *behind) {
        return text && text->letter.isNull() && !(behind && behind->isWeekday());
    };
    const auto first = goesToo(at(year - 1), at(year - 2)) ? year - 1 : year;
    const auto last = goesToo(at(year + 1), at(year + 2)) ? year + 1 : year;
    pieces.erase(pieces.begin() + first, pieces.begin() + last + 1);
}

} // namespace

QString dayPattern(const QString &longPattern) {
    std::vector<Piece> pieces = piecesOf(longPattern);
    removeYear(pieces);
    QString pattern;
    for (const Piece &piece : pieces)
        pattern += piece.text == u"MMMM" ? QStringLiteral("MMM") : piece.text;
    const bool hasWeekday = std::any_of(pieces.begin(), pieces.end(), std::mem_fn(&Piece::isWeekday));
    return hasWeekday ? pattern : QStringLiteral("dddd, ") + pattern;
}

QString dayTitle(const QDate &day, const QDate &today, const QLocale &locale) {
    if (day == today)
        return QCoreApplication::translate("PortUI", "Today");
    if (day.addDays(1) == today)
        return QCoreApplication::translate("PortUI", "Yesterday");
    return locale.toString(day, dayPattern(locale.dateFormat(QLocale::LongFormat)));
}

} // namespace tarnvale
