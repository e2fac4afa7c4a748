#pragma once

#include "app/GuiClipboard.h"
#include "app/QuitSignals.h"
#include "app/Updater.h"
#include "commands/automation/Automation.h"
#include "commands/automation/IdleWatch.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "platform/SystemPlatform.h"
#include "platform/linux/PortalAppearance.h"
#include "presentation/panel/MenuBarController.h"
#include "presentation/settings/SettingsWindow.h"
#include "presentation/window/MainWindowController.h"
#include "store/PortStore.h"

#include <QObject>
#include <QQmlEngine>

#include <memory>

namespace tarnvale {

/// Makes what lives as long as the program, in its order. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(const QDBusConnection &bus, MakeUpdateController makeUpdater = {});
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;
    ~AppDelegate() override;

    /// What other programs meet; it is there before the rest, and keeps what they ask until the start.
    [[nodiscard]] Automation &automation() { return m_automation; }

    /// The one store, made at the first call.
    [[nodiscard]] PortStore &store();

    /// What a start brings to the screen, beside the icon.
    enum class Opening {
        window, ///< the main window, unless the user doesn't want it at the start
        nothing,
    };

    /// The program as its user knows it: icon, panel, hot key, window. Later calls do nothing.
    void finishLaunching(Opening opening = Opening::nothing);

    /// Answers other programs only, and leaves after a while unless one of them asks for the panel.
    void serve();

private:
    [[nodiscard]] ApplicationActions applicationActions();
    [[nodiscard]] PanelActions panelActions();
    [[nodiscard]] WindowActions windowActions();
    [[nodiscard]] SettingsActions settingsActions();
    void makeFaces();
    void copyInstallCommand();
    void showWindow(const QString &activationToken);
    void togglePanel(const QString &activationToken);
    void neverStayUnseen();

    QDBusConnection m_bus;
    GuiClipboard m_clipboard;
    SystemPlatform m_platform{m_clipboard};
    Automation m_automation;
    Updater m_updater;
    AppearanceReader m_appearance;
    QQmlEngine m_engine;
    std::unique_ptr<PortStore> m_store;
    std::unique_ptr<GlobalHotKey> m_hotKey;
    std::unique_ptr<MenuBarController> m_menuBar;
    std::unique_ptr<MainWindowController> m_mainWindow;
    std::unique_ptr<SettingsWindow> m_settings;
    std::unique_ptr<IdleWatch> m_idleWatch; ///< while it only serves
    std::unique_ptr<QuitSignals> m_signalSources;
};

} // namespace tarnvale
