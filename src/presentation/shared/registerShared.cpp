#include "presentation/shared/registerShared.h"

#include "presentation/design/registerDesign.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Shared(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerShared(QQmlEngine &engine) {
    registerDesign(engine);
    qml_register_types_Tarnvale_Shared();
}

} // namespace tarnvale
