#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "drive/DemoWorld.h"
#include "presentation/panel/MenuBarController.h"
#include "store/PortStore.h"

#include <QPoint>
#include <QQmlEngine>
#include <QQuickItem>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The real panel over a made-up machine, without motion, and every warning that comes of it.
class PanelScene {
public:
    /// A scene of `demoScenes()`.
    explicit PanelScene(const std::string &scene, bool isDark = false);
    PanelScene(const PanelScene &) = delete;
    PanelScene &operator=(const PanelScene &) = delete;
    ~PanelScene();

    /// Opens the panel and lets two scans pass.
    void open();
    /// Lets the time of the made-up machine pass.
    void pass(std::chrono::milliseconds time);
    /// Lets the window lay out and draw what it shows.
    void draw();

    /// The parts that can be seen, whole or in part, in the order in which they lie in the tree.
    [[nodiscard]] std::vector<QQuickItem *> visibleItems() const;
    /// The first visible part of that QML type; null without one.
    [[nodiscard]] QQuickItem *find(const char *type, const QString &title = {}) const;
    [[nodiscard]] std::vector<QQuickItem *> findAll(const char *type) const;
    /// In the window.
    [[nodiscard]] static QPoint middleOf(const QQuickItem &item);
    void click(const QQuickItem &item, Qt::MouseButton button = Qt::LeftButton);
    /// Moves the pointer there.
    void hover(const QPoint &place);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string warnings() const { return m_warnings.join(QLatin1Char('\n')).toStdString(); }

    DemoWorld world;
    int quits = 0;
    int windows = 0;
    GlobalHotKey hotKey{world.platform.settings, std::make_unique<FakeRegistrar>()};
    QQmlEngine engine;
    std::unique_ptr<PortStore> store;
    std::unique_ptr<MenuBarController> menuBar;

private:
    void settleStore();

    QStringList m_warnings;
    QtMessageHandler m_earlier = nullptr;
};

} // namespace tarnvale
