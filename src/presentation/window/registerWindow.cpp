#include "presentation/window/registerWindow.h"

#include "presentation/pages/registerPages.h"
#include "presentation/palette/registerPalette.h"
#include "presentation/settings/registerSettings.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Window(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerWindow(QQmlEngine &engine) {
    registerPages(engine);
    registerPalette(engine);
    registerSettings(engine);
    qml_register_types_Tarnvale_Window();
}

} // namespace tarnvale
