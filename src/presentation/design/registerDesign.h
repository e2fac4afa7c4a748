#pragma once

#include <QColor>

class QObject;
class QQmlEngine;

namespace tarnvale {

/// Makes the QML module `Tarnvale.Design`, symbols and the icons of applications known to `engine`. Menus and
/// tool tips take their colours from the theme of the last engine that is alive.
void registerDesign(QQmlEngine &engine);

/// The theme of `engine`, owned by it. Qt 6.4 doesn't find a singleton written in QML by its name alone.
[[nodiscard]] QObject *designTheme(QQmlEngine &engine);

/// The colour that the theme gives this name, as in "ink"; black when there is no theme or no such name.
[[nodiscard]] QColor themeColor(const char *name);

} // namespace tarnvale
