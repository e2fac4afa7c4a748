#include "commands/automation/matchesTerms.h"

#include "commands/automation/shortcuts.h"

#include <algorithm>

namespace tarnvale {

namespace {

constexpr qsizetype mostTerms = 16;
constexpr qsizetype longestTerm = 100;

} // namespace

bool matchesTerms(const ListeningPort &port, const QStringList &terms) {
    QStringList wanted = terms;
    wanted.removeAll(QString());
    if (wanted.isEmpty() || wanted.size() > mostTerms)
        return false;
    const QString number = QString::number(port.port);
    const QString label = QString::fromStdString(portLabel(port));
    const QString command = QString::fromStdString(port.command);
    return std::all_of(wanted.begin(), wanted.end(), [&](const QString &term) {
        return term.size() <= longestTerm &&
               (number.startsWith(term) || label.contains(term, Qt::CaseInsensitive) ||
                command.contains(term, Qt::CaseInsensitive));
    });
}

} // namespace tarnvale
