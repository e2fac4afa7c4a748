#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace tarnvale {

/// What another program, or a second start of this one, asks the application to do.
struct ApplicationRequest {
    QString action;          ///< empty: to show itself
    QVariantList parameters; ///< of the action
    QString activationToken; ///< lets a window come to the front (xdg-activation); empty without one

    bool operator==(const ApplicationRequest &) const = default;
};

/// The token in the platform data of a call (freedesktop.org, Desktop Entry 1.5, D-Bus activation):
/// "activation-token", else "desktop-startup-id". Empty unless it is short printable ASCII.
[[nodiscard]] QString activationTokenIn(const QVariantMap &platformData);

/// The platform data that hands `token` on.
[[nodiscard]] QVariantMap platformDataWith(const QString &token);

/// The token that this program was started with.
[[nodiscard]] QString activationTokenOfThisStart();

/// A request without parameters as one line of JSON.
[[nodiscard]] QByteArray requestLine(const ApplicationRequest &request);

/// The request in such a line; nothing when it is none.
[[nodiscard]] std::optional<ApplicationRequest> parseRequestLine(const QByteArray &line);

/// Longer lines are no requests.
constexpr qsizetype longestRequestLine = 4096;

} // namespace tarnvale
