#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// What an action of a notification needs to be carried out.
struct NotificationPayload {
    std::optional<std::int64_t> port;
    std::optional<std::string> args; ///< a command line
    std::optional<std::string> cwd;  ///< its working folder
    std::optional<std::string> url;  ///< a public address

    bool operator==(const NotificationPayload &) const = default;
};

/// A button of a notification.
struct NotificationAction {
    std::string id;
    std::string title;

    bool operator==(const NotificationAction &) const = default;
};

/// A kind of notification: the buttons that all of it carry.
struct NotificationCategory {
    std::string id;
    std::vector<NotificationAction> actions;

    bool operator==(const NotificationCategory &) const = default;
};

/// A message to the user.
struct Notification {
    std::string title;
    std::string body;                    ///< plain text
    std::optional<std::string> category; ///< none: no buttons
    std::optional<NotificationPayload> payload;

    bool operator==(const Notification &) const = default;
};

/// The action of a click on the notification itself.
inline constexpr const char *defaultNotificationAction = "default";

/// The desktop's notifications. Main thread. Nothing here fails visibly: without a server, or with one that
/// refuses, a message is dropped.
class Notifications {
public:
    Notifications() = default;
    Notifications(const Notifications &) = delete;
    Notifications &operator=(const Notifications &) = delete;
    virtual ~Notifications() = default;

    /// Called on the main thread with the id of the action that the user chose, or with
    /// `defaultNotificationAction`, and the payload of the notification; an empty one when it had none.
    std::function<void(const std::string &, const NotificationPayload &)> onAction;

    /// To be called once, before anything is posted.
    virtual void setCategories(const std::vector<NotificationCategory> &categories) = 0;

    /// Asks the user for permission where the system wants that.
    virtual void requestAuthorization() = 0;

    /// Shows the message at once, with a sound.
    virtual void post(const Notification &notification) = 0;
};

} // namespace tarnvale
