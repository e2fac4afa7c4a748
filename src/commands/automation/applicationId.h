#pragma once

#include <QString>

namespace tarnvale {

// The names of the application on the session bus.

inline const QString applicationName = QStringLiteral("dev.tarnvale.Tarnvale");
inline const QString applicationPath = QStringLiteral("/dev/tarnvale/Tarnvale");
inline const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

} // namespace tarnvale
