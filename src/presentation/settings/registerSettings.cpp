#include "presentation/settings/registerSettings.h"

#include "presentation/shared/registerShared.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Settings(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerSettings(QQmlEngine &engine) {
    registerShared(engine);
    qml_register_types_Tarnvale_Settings();
}

} // namespace tarnvale
