#include "updates/safeFileName.h"

#include <QUrl>

#include <algorithm>

namespace tarnvale {

namespace {

bool isSafe(QChar character) {
    const char16_t c = character.unicode();
    const bool isAlphanumeric =
        (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    return isAlphanumeric || QStringView(u" -_.+~").contains(character);
}

/// Where the endings of `name` begin, such as ".deb" or ".tar.gz"; its size when there are none.
qsizetype startOfEndings(const QString &name) {
    constexpr qsizetype longest = 12;
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || name.size() - dot > longest)
        return name.size();
    return name.left(dot).endsWith(QLatin1String(".tar")) ? dot - 4 : dot;
}

} // namespace

QString safeFileName(const std::string &url) {
    constexpr qsizetype longest = 120;
    QString name = QUrl(QString::fromStdString(url)).path(QUrl::FullyDecoded);
    name = name.mid(name.lastIndexOf(QLatin1Char('/')) + 1);
    std::replace_if(
        name.begin(), name.end(), [](QChar c) { return !isSafe(c); }, QLatin1Char('_'));
    while (name.startsWith(QLatin1Char('.')) || name.startsWith(QLatin1Char('-')))
        name.remove(0, 1);
    name = name.simplified();
    const qsizetype endings = startOfEndings(name);
    const qsizetype room = longest - (name.size() - endings);
    name = name.left(std::min(endings, room)) + name.mid(endings);
    return name.isEmpty() ? QStringLiteral("Tarnvale-update") : name;
}

QString numberedName(const QString &name, int number) {
    if (number == 0)
        return name;
    const qsizetype endings = startOfEndings(name);
    return QStringLiteral("%1 (%2)%3").arg(name.left(endings), QString::number(number), name.mid(endings));
}

} // namespace tarnvale
