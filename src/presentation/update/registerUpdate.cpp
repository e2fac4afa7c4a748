#include "presentation/update/registerUpdate.h"

#include "presentation/design/registerDesign.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Update(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerUpdate(QQmlEngine &engine) {
    registerDesign(engine);
    qml_register_types_Tarnvale_Update();
}

} // namespace tarnvale
