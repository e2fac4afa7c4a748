#include "presentation/panel/registerPanel.h"

#include "presentation/shared/registerShared.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Panel(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerPanel(QQmlEngine &engine) {
    registerShared(engine);
    qml_register_types_Tarnvale_Panel();
}

} // namespace tarnvale
