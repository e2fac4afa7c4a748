#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "drive/DemoWorld.h"
#include "presentation/window/MainWindowController.h"
#include "store/PortStore.h"
#include "support/TemporaryFolder.h"

#include <QPoint>
#include <QQmlEngine>
#include <QQuickItem>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QMenu;

namespace tarnvale {

/// How a window's scene looks.
struct WindowLook {
    bool isDark = false;
    bool reducesMotion = true;
};

/// The real main window over a made-up machine, and every warning that comes of it. The user's home is an
/// empty folder, and the welcome has been seen.
class WindowScene {
public:
    /// A scene of `demoScenes()`, after `prepare` has changed it; the window is shown.
    explicit WindowScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare = {},
                         const WindowLook &look = {});
    WindowScene(const WindowScene &) = delete;
    WindowScene &operator=(const WindowScene &) = delete;
    ~WindowScene();

    [[nodiscard]] MainWindow &window() const { return *controller->window(); }
    [[nodiscard]] MainViewController &view() const { return controller->view(); }
    [[nodiscard]] PortsController &ports() const { return *view().ports(); }
    [[nodiscard]] InspectorController &inspector() const { return *ports().inspector(); }

    /// One scan more, and what follows from it.
    void scan();
    /// Lets the time of the made-up machine pass.
    void pass(std::chrono::milliseconds time);
    /// Lets the window lay out and draw what it shows.
    void draw();
    void resize(int width, int height);
    /// Shows the row of that port on the page of all ports.
    void inspect(std::int64_t port);

    /// The parts that can be seen, whole or in part, in the order in which they lie in the tree.
    [[nodiscard]] std::vector<QQuickItem *> visibleItems() const;
    [[nodiscard]] std::vector<QQuickItem *> findAll(const char *type) const;
    /// The first visible part of that QML type of which `property` is `value`; null without one.
    [[nodiscard]] QQuickItem *find(const char *type, const QString &value = {},
                                   const char *property = "title") const;
    /// All texts that can be seen.
    [[nodiscard]] QStringList texts() const;
    [[nodiscard]] bool says(const QString &text) const { return texts().contains(text); }

    /// In the window.
    [[nodiscard]] static QRectF frameOf(const QQuickItem &item);
    [[nodiscard]] static QPoint middleOf(const QQuickItem &item);
    void click(const QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void hover(const QPoint &place);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString &text);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string warnings() const { return m_warnings.join(QLatin1Char('\n')).toStdString(); }

    TemporaryFolder home;
    DemoWorld world;
    std::vector<std::string> done; ///< what the application was asked for
    std::unique_ptr<GlobalHotKey> hotKey;
    QQmlEngine engine;
    std::unique_ptr<PortStore> store;
    std::unique_ptr<MainWindowController> controller;

private:
    void settleStore();

    QByteArray m_earlierHome;
    QStringList m_warnings;
    QtMessageHandler m_earlier = nullptr;
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
