#pragma once

#include <QString>
#include <QStringList>

namespace tarnvale {

class GlobalHotKey;

/// The keys that open the panel, as they stand on their caps; empty when none do.
[[nodiscard]] QStringList hotKeyCaps(const GlobalHotKey &hotKey);

/// What the user has the desktop bind to a key, where no application may take one; empty elsewhere.
[[nodiscard]] QString hotKeyCommand(const GlobalHotKey &hotKey);

/// Whether a combination can be recorded: the system gives keys away, or asks its user.
[[nodiscard]] bool canRecord(const GlobalHotKey &hotKey);

} // namespace tarnvale
