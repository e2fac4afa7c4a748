#pragma once

#include "presentation/MenuEntry.h"

#include <functional>
#include <vector>

namespace tarnvale {

class PortStore;
struct PanelActions;

/// The menu for trays that show menus instead of telling of a click: the panel first, then the first servers,
/// each with what can be done with it, and the end of the program. Its entries act on what is given, which
/// outlives it.
[[nodiscard]] std::vector<MenuEntry> trayMenu(PortStore &store, const PanelActions &actions,
                                              const std::function<void()> &openPanel);

} // namespace tarnvale
