#pragma once

#include "presentation/MenuEntry.h"

#include <QPoint>

class QMenu;
class QQuickItem;
class QWindow;

namespace tarnvale {

/// Opens a menu over `owner` at a point of the screen. It may leave the window's bounds, is worked by pointer
/// and keyboard, and deletes itself when it closes. Nothing, and null, for no entries. An entry's action runs
/// after the menu has closed.
QMenu *popUpMenu(const std::vector<MenuEntry> &entries, const QPoint &globalPosition, QWindow *owner);

/// The same beneath `item`, or above it where the screen ends.
QMenu *popUpMenu(const std::vector<MenuEntry> &entries, QQuickItem *item);

/// Whether a menu of ours is open: then a window that loses the focus hasn't lost its user.
[[nodiscard]] bool isMenuOpen();

} // namespace tarnvale
