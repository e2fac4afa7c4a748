#include "presentation/palette/registerPalette.h"

#include "presentation/shared/registerShared.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Palette(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerPalette(QQmlEngine &engine) {
    registerShared(engine);
    qml_register_types_Tarnvale_Palette();
}

} // namespace tarnvale
