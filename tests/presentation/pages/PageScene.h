#pragma once

#include "drive/DemoWorld.h"
#include "presentation/pages/ActivityController.h"
#include "presentation/pages/OverviewController.h"
#include "presentation/pages/SitesController.h"
#include "presentation/pages/StacksController.h"
#include "store/PortStore.h"

#include <QPoint>
#include <QPromise>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// Real pages over a made-up machine, without motion, and every warning that comes of them. One at a time is
/// shown.
class PageScene {
public:
    /// A scene of `demoScenes()`, after `prepare` has changed it.
    explicit PageScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare = {},
                       bool isDark = false);
    PageScene(const PageScene &) = delete;
    PageScene &operator=(const PageScene &) = delete;
    ~PageScene();

    void showOverview();
    /// With the sheet for a new one over it, as the window shows it.
    void showStacks();
    void showActivity();
    void showSites(const std::vector<LocalSites::Site> &sites);

    void resize(int width, int height);
    /// One scan more, and what follows from it.
    void scan();
    /// Lets the time of the made-up machine pass.
    void pass(std::chrono::milliseconds time);
    /// Lets the window lay out and draw what it shows.
    void draw();

    /// The parts that can be seen, whole or in part, in the order in which they lie in the tree.
    [[nodiscard]] std::vector<QQuickItem *> visibleItems() const;
    [[nodiscard]] std::vector<QQuickItem *> findAll(const char *type) const;
    /// The first visible part of that QML type, with that title; null without one.
    [[nodiscard]] QQuickItem *find(const char *type, const QString &title = {}) const;
    /// All texts that can be seen.
    [[nodiscard]] QStringList texts() const;
    /// In the window.
    [[nodiscard]] static QPoint middleOf(const QQuickItem &item);
    void click(const QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Small letters and blanks.
    void type(const QString &text);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string warnings() const { return m_warnings.join(QLatin1Char('\n')).toStdString(); }

    DemoWorld world;
    std::unique_ptr<PortStore> store;
    std::optional<std::string> folderToChoose; ///< nothing: the user cancels
    std::vector<std::string> selected;         ///< the ports that the overview opened, by id
    std::vector<SidebarItem> pages;            ///< those that the overview led to
    std::unique_ptr<OverviewController> overview;
    std::unique_ptr<StacksController> stacks;
    std::unique_ptr<ActivityController> activity;
    std::unique_ptr<SitesController> sites;
    QQuickView view;

private:
    void show(const char *qml, QObject *controller);
    void settleStore();

    std::unique_ptr<QQmlComponent> m_component;
    QStringList m_warnings;
    QtMessageHandler m_earlier = nullptr;
};

} // namespace tarnvale
