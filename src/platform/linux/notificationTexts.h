#pragma once

#include "platform/Notifications.h"

#include <QString>
#include <QStringList>

namespace tarnvale {

/// `notification`'s body for a server with these capabilities (freedesktop.org, Desktop Notifications 1.2):
/// escaped where the server reads markup, and bounded, as it may hold texts of foreign programs.
[[nodiscard]] QString notificationBody(const Notification &notification, const QStringList &capabilities);

/// Its title, bounded; titles never hold markup.
[[nodiscard]] QString notificationTitle(const Notification &notification);

/// The ids and titles, in turn, of a click on the notification itself and of `buttons`; empty where the
/// server has no actions.
[[nodiscard]] QStringList notificationActions(const std::vector<NotificationAction> &buttons,
                                              const QStringList &capabilities);

} // namespace tarnvale
