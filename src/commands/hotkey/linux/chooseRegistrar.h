#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"

#include <QDBusConnection>

#include <functional>
#include <memory>
#include <string>

namespace tarnvale {

/// What decides how a combination can be taken.
struct HotKeySurroundings {
    bool isWayland = false;
    std::string display{}; ///< the X server as in ":0"; empty for that of `DISPLAY`
    QDBusConnection bus = QDBusConnection::sessionBus();
};

/// By the session that the variables of the environment tell of; `variable` returns one of them, empty when
/// it isn't set. Under Wayland the X server, if there is one, hears only some keys and doesn't count.
[[nodiscard]] HotKeySurroundings
hotKeySurroundings(const std::function<std::string(const char *)> &variable,
                   const QDBusConnection &bus = QDBusConnection::sessionBus());

/// X11: the X server. Wayland: the portal, else KDE's daemon. Where none is there: a command to be bound.
[[nodiscard]] std::unique_ptr<HotKeyRegistrar> chooseRegistrar(const HotKeySurroundings &surroundings);

/// The same for the session that this process belongs to.
[[nodiscard]] std::unique_ptr<HotKeyRegistrar> chooseRegistrar(const QDBusConnection &bus);

/// What a desktop can bind to keys of the user's choice; it does what a press does.
inline constexpr const char *togglePanelCommand = "gapplication action dev.tarnvale.Tarnvale toggle-panel";

} // namespace tarnvale
