#pragma once

#include "presentation/MenuEntry.h"

#include <QVariantMap>

namespace tarnvale {

/// How com.canonical.dbusmenu describes an entry to a host. What has its default there is left out.
[[nodiscard]] QVariantMap menuProperties(const MenuEntry &entry);

/// The defaults of that protocol: every property that an item can have, as it is when an item doesn't name
/// it.
[[nodiscard]] const QVariantMap &menuPropertyDefaults();

} // namespace tarnvale
