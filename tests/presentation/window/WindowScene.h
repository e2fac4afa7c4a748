#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "presentation/shared/StoreScreen.h"
#include "presentation/window/MainWindowController.h"
#include "support/TemporaryFolder.h"

#include <QByteArray>
#include <QQmlEngine>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QMenu;

namespace tarnvale {

/// The real main window over a made-up machine. The user's home is an empty folder, and the welcome has been
/// seen.
class WindowScene final : public StoreScreen {
public:
    /// A scene of `demoScenes()`, after `prepare` has changed it; the window is shown.
    explicit WindowScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare = {},
                         const ScreenLook &look = {});
    WindowScene(const WindowScene &) = delete;
    WindowScene &operator=(const WindowScene &) = delete;
    ~WindowScene() override;

    [[nodiscard]] MainWindow &window() const { return *controller->window(); }
    [[nodiscard]] MainViewController &view() const { return controller->view(); }
    [[nodiscard]] PortsController &ports() const { return *view().ports(); }
    [[nodiscard]] InspectorController &inspector() const { return *ports().inspector(); }

    /// Shows the row of that port on the page of all ports.
    void inspect(std::int64_t port);

    TemporaryFolder home;
    std::vector<std::string> done; ///< what the application was asked for
    std::unique_ptr<GlobalHotKey> hotKey;
    QQmlEngine engine;
    std::unique_ptr<MainWindowController> controller;

private:
    [[nodiscard]] QQuickWindow *shownWindow() const override { return controller->window(); }

    QByteArray m_earlierHome;
};

/// Whether the one item lies in the other.
[[nodiscard]] bool isWithin(const QQuickItem *item, const QQuickItem *other);

/// The sidebar's row of that page; null without one.
[[nodiscard]] QQuickItem *sidebarRow(const WindowScene &scene, const char *key);
/// What has the keyboard.
[[nodiscard]] QQuickItem *focused(const WindowScene &scene);
/// The editor of the toolbar's search field.
[[nodiscard]] QQuickItem *searchInput(const WindowScene &scene);
/// What a screen reader calls it.
[[nodiscard]] QString nameOf(QQuickItem *item);

/// The menu that is open; null without one.
[[nodiscard]] QMenu *openMenu();
void closeMenu(const WindowScene &scene);

/// Leaves a picture of the window in the folder `TARNVALE_PICTURES`, if that is set, to be looked at.
void keepPicture(const WindowScene &scene, const std::string &name);

} // namespace tarnvale
