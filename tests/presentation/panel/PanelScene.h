#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "presentation/panel/MenuBarController.h"
#include "presentation/shared/StoreScreen.h"

#include <QQmlEngine>

#include <memory>
#include <string>

namespace tarnvale {

/// The real panel over a made-up machine, without motion.
class PanelScene final : public StoreScreen {
public:
    /// A scene of `demoScenes()`.
    explicit PanelScene(const std::string &scene, bool isDark = false);
    PanelScene(const PanelScene &) = delete;
    PanelScene &operator=(const PanelScene &) = delete;
    ~PanelScene() override;

    /// Opens the panel and lets two scans pass.
    void open();

    int quits = 0;
    int windows = 0;
    GlobalHotKey hotKey{world.platform.settings, std::make_unique<FakeRegistrar>()};
    QQmlEngine engine;
    std::unique_ptr<MenuBarController> menuBar;

private:
    [[nodiscard]] QQuickWindow *shownWindow() const override { return &menuBar->panel(); }
};

} // namespace tarnvale
