#pragma once

#include "presentation/pages/ActivityController.h"
#include "presentation/pages/OverviewController.h"
#include "presentation/pages/SitesController.h"
#include "presentation/pages/StacksController.h"
#include "presentation/shared/StoreScreen.h"

#include <QQmlComponent>
#include <QQuickView>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// Real pages over a made-up machine, without motion. One at a time is shown.
class PageScene final : public StoreScreen {
public:
    /// A scene of `demoScenes()`, after `prepare` has changed it.
    explicit PageScene(const std::string &scene, const std::function<void(DemoWorld &)> &prepare = {},
                       bool isDark = false);
    PageScene(const PageScene &) = delete;
    PageScene &operator=(const PageScene &) = delete;
    ~PageScene() override;

    void showOverview();
    /// With the sheet for a new one over it, as the window shows it.
    void showStacks();
    void showActivity();
    void showSites(const std::vector<LocalSites::Site> &sites);

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
    [[nodiscard]] QQuickWindow *shownWindow() const override { return view.contentItem()->window(); }

    std::unique_ptr<QQmlComponent> m_component;
};

} // namespace tarnvale
