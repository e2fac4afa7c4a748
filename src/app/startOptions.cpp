#include "app/startOptions.h"

namespace tarnvale {

std::expected<StartOptions, QString> parseStartOptions(const QStringList &words) {
    StartOptions options;
    for (const QString &word : words) {
        if (word == QStringLiteral("--gapplication-service"))
            options.isService = true;
        else if (word == QStringLiteral("--toggle-panel"))
            options.action = QStringLiteral("toggle-panel");
        else if (word == QStringLiteral("--list"))
            options.action = QStringLiteral("list");
        else
            return std::unexpected(
                QStringLiteral("unknown word '%1'; 'tarnctl help' lists the commands").arg(word));
    }
    return options;
}

} // namespace tarnvale
