#pragma once

#include <QString>
#include <QStringList>

#include <expected>

namespace tarnvale {

/// How the application was asked to start.
struct StartOptions {
    bool isService = false; ///< by the session bus: nothing is shown until somebody asks for it
    QString action;         ///< what the running application is to do; empty: to show itself

    bool operator==(const StartOptions &) const = default;
};

/// What `words`, without the program's name, ask for; or a line that says what is wrong with them.
[[nodiscard]] std::expected<StartOptions, QString> parseStartOptions(const QStringList &words);

} // namespace tarnvale
