#pragma once

#include "commands/hotkey/Shortcut.h"

#include <optional>
#include <string>

namespace tarnvale {

/// `shortcut` as desktops exchange it, as in "CTRL+ALT+p" (freedesktop.org, "Shortcuts XDG Specification"):
/// what the layout writes, not the position. Empty when its label is no key.
[[nodiscard]] std::string portalTrigger(const Shortcut &shortcut);

/// `shortcut` as the number of a Qt::Key with Qt::KeyboardModifiers, which KDE exchanges. Nothing when its
/// label is no key.
[[nodiscard]] std::optional<int> qtKeyCombination(const Shortcut &shortcut);

} // namespace tarnvale
