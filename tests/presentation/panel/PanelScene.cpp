#include "presentation/panel/PanelScene.h"

#include "presentation/design/ToolTips.h"
#include "presentation/panel/registerPanel.h"

namespace tarnvale {

using namespace std::chrono_literals;

PanelScene::PanelScene(const std::string &scene, bool isDark)
    : StoreScreen(scene, ScreenLook{.isDark = isDark}) {
    start();
    registerPanel(engine);
    PanelActions actions;
    actions.quit = [this] { ++quits; };
    actions.openWindow = [this] { ++windows; };
    actions.copyInstallCommand = [] {};
    menuBar = std::make_unique<MenuBarController>(*store, world.platform.platform(), engine, hotKey, actions,
                                                  QDBusConnection(QStringLiteral("none")));
    hotKey.setUp();
    settleAll();
}

PanelScene::~PanelScene() {
    settleAll();
    ToolTips::instance().hide();
    menuBar.reset();
}

void PanelScene::open() {
    menuBar->open();
    scan();
    scan();
    pass(1s);
    draw();
}

} // namespace tarnvale
