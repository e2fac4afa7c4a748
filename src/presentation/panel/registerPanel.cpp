#include "presentation/panel/registerPanel.h"

#include "presentation/design/registerDesign.h"

#include <QQmlEngine>

extern void qml_register_types_Tarnvale_Panel();

namespace tarnvale {

void registerPanel(QQmlEngine &engine) {
    registerDesign(engine);
    qml_register_types_Tarnvale_Panel();
}

} // namespace tarnvale
