#pragma once

#include "presentation/pages/ActivityController.h"
#include "presentation/pages/OverviewController.h"
#include "presentation/pages/SitesController.h"
#include "presentation/pages/StacksController.h"
#include "presentation/palette/PaletteController.h"
#include "presentation/settings/WelcomeController.h"
#include "presentation/window/MainViewController.h"
#include "presentation/window/MainWindow.h"
#include "presentation/window/WindowPlace.h"

#include <QObject>
#include <QQmlEngine>
#include <QString>

#include <memory>

namespace tarnvale {

class GlobalHotKey;
class PortStore;

/// The program's second face beside the panel. The window is made when it is first shown. Closing hides it;
/// some time later what it showed is given back, and made anew when it is wanted again, as it was left. Main
/// thread.
class MainWindowController : public QObject {
    Q_OBJECT

public:
    /// All outlive this object.
    MainWindowController(PortStore &store, const Platform &platform, QQmlEngine &engine, GlobalHotKey &hotKey,
                         const WindowActions &actions);
    MainWindowController(const MainWindowController &) = delete;
    MainWindowController &operator=(const MainWindowController &) = delete;
    ~MainWindowController() override;

    /// Brings the window up, in front and with the keyboard. `activationToken` is the desktop's leave to do
    /// so (xdg-activation); empty where none was given.
    void show(const QString &activationToken = {});

    /// The user has chosen anew whether pages are shown in pictures.
    void updatePictures() { m_pictures.update(); }

    [[nodiscard]] bool isVisible() const { return m_window && m_window->isVisible(); }
    [[nodiscard]] MainWindow *window() const { return m_window.get(); } ///< null while there is none
    [[nodiscard]] MainViewController &view() { return m_view; }
    [[nodiscard]] StacksController &stacks() { return m_stacks; }
    [[nodiscard]] PaletteController &palette() { return m_palette; }

private:
    void makeWindow();
    void connectPages();
    void connectMenus();
    void handleClosed();
    void handlePage();
    void giveBack();
    void storePlaceSoon();
    void storePlace();

    PortStore &m_store;
    Platform m_platform;
    QQmlEngine &m_engine;
    PagePictures m_pictures;
    MainViewController m_view;
    OverviewController m_overview;
    StacksController m_stacks;
    SitesController m_sites;
    ActivityController m_activity;
    PaletteController m_palette;
    WelcomeController m_welcome;
    std::unique_ptr<MainWindow> m_window;
    WindowPlace m_place; ///< the last one that was seen
    int m_closings = 0;
    bool m_isStoringDue = false;
};

} // namespace tarnvale
