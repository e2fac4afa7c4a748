#include "presentation/pages/registerPages.h"

#include "presentation/shared/registerShared.h"

#include <QQmlEngine>

// Made by the build; Qt 6.4 has no header for it.
void qml_register_types_Tarnvale_Pages(); // NOLINT(readability-identifier-naming)

namespace tarnvale {

void registerPages(QQmlEngine &engine) {
    registerShared(engine);
    qml_register_types_Tarnvale_Pages();
}

} // namespace tarnvale
