#include "store/launchLog.h"

#include "discovery/text.h"
#include "probes/RegularFile.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tarnvale {

namespace {

/// The first code point of the character that `text` holds.
char32_t firstCodePoint(QStringView text) {
    return text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate()
               ? QChar::surrogateToUcs4(text[0], text[1])
               : text[0].unicode();
}

/// The characters of `text` as their users see them, letters with their accents.
std::vector<QStringView> characters(const QString &text) {
    std::vector<QStringView> result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype begin = 0; finder.toNextBoundary() >= 0; begin = finder.position())
        result.push_back(QStringView(text).mid(begin, finder.position() - begin));
    return result;
}

/// `args` as a part of a file name: letters and digits, and one "-" for all that is between them.
QString nameOf(const std::string &args) {
    constexpr std::size_t mostCharacters = 60;
    constexpr std::size_t mostBytes = 200; // a character may carry any number of marks
    const QString text = QString::fromStdString(args);
    std::vector<QStringView> kept;
    const QStringView hyphen = u"-";
    for (const QStringView character : characters(text)) {
        const char32_t first = firstCodePoint(character);
        if (QChar::isLetterOrNumber(first))
            kept.push_back(character);
        else if (!kept.empty() && kept.back() != hyphen)
            kept.push_back(hyphen);
    }
    if (!kept.empty() && kept.back() == hyphen)
        kept.pop_back();
    QString name;
    std::size_t bytes = 0;
    for (std::size_t count = 0; count < std::min(kept.size(), mostCharacters); ++count) {
        const QStringView character = kept[kept.size() - 1 - count];
        bytes += static_cast<std::size_t>(character.toUtf8().size());
        if (bytes > mostBytes)
            break;
        name.prepend(character);
    }
    return name;
}

} // namespace

std::string launchLogURL(const std::string &logsFolder, const std::string &args, const std::string &cwd) {
    constexpr std::size_t longestName = 255; // NAME_MAX of every file system in use
    const std::string_view folder = cwd.find_first_not_of('/') == cwd.npos ? "" : lastPathComponent(cwd);
    const std::string ending = QStringLiteral("-%1.log").arg(nameOf(args)).toStdString();
    // A folder's name may fill that length alone.
    std::string_view start = folder;
    while (start.size() + ending.size() > longestName)
        start = firstCharacters(start, characterCount(start) - 1);
    return logsFolder + "/" + std::string(start) + ending;
}

std::string readLogTail(const std::string &path, std::size_t maxBytes) {
    const auto file = RegularFile::open(path);
    if (!file)
        return {};
    return repairedUtf8(file->read(file->size() - std::min<std::uint64_t>(file->size(), maxBytes), maxBytes));
}

} // namespace tarnvale
