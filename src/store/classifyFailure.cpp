#include "store/classifyFailure.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>

namespace tarnvale {

namespace {

/// What servers say of a port that is taken: "listen EADDRINUSE: address already in use :::3000" (Node),
/// "Error: Port 3000 is already in use" (Vite), "Bind for 0.0.0.0:80 failed: port is already allocated"
/// (Docker).
bool isConflictLine(const QString &line) {
    static constexpr std::array signs{"address already in use", "eaddrinuse", "port is already in use",
                                      "port is already allocated"};
    const QString lower = line.toLower();
    return std::any_of(signs.begin(), signs.end(),
                       [&](const char *sign) { return lower.contains(QLatin1StringView(sign)); });
}

std::optional<std::int64_t> portIn(const QString &line) {
    static const QRegularExpression afterColon(QStringLiteral(":([0-9]{2,5})\\b"));
    static const QRegularExpression afterWord(QStringLiteral("port ([0-9]{2,5})\\b"),
                                              QRegularExpression::CaseInsensitiveOption);
    for (const QRegularExpression *expression : {&afterColon, &afterWord})
        if (const auto match = expression->match(line); match.hasMatch())
            return match.captured(1).toLongLong();
    return std::nullopt;
}

/// `line` without spaces and tabs at its ends.
QString trimmed(const QString &line) {
    static const QRegularExpression ends(QStringLiteral("^[ \\t]+|[ \\t]+$"));
    return QString(line).remove(ends);
}

} // namespace

LaunchFailure classifyFailure(std::string_view text) {
    static const QRegularExpression lineEnds(QStringLiteral("[\\n\\x0B\\f\\r\\x{85}\\x{2028}\\x{2029}]"));
    const QStringList lines = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
                                  .split(lineEnds, Qt::SkipEmptyParts);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        if (isConflictLine(*line))
            return {.isConflict = true, .port = portIn(*line), .line = {}};
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        if (const QString rest = trimmed(*line); !rest.isEmpty())
            return {.isConflict = false, .port = {}, .line = rest.toStdString()};
    return {};
}

} // namespace tarnvale
