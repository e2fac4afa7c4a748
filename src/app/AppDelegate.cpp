#include "app/AppDelegate.h"

#include "commands/hotkey/linux/chooseRegistrar.h"
#include "discovery/executablePath.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Notifications.h"
#include "platform/Settings.h"
#include "presentation/design/Appearance.h"
#include "presentation/installCommand.h"
#include "presentation/panel/registerPanel.h"
#include "presentation/window/registerWindow.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>

namespace tarnvale {

using namespace std::chrono_literals;

AppDelegate::AppDelegate(const QDBusConnection &bus, MakeUpdateController makeUpdater)
    : m_bus(bus),
      m_automation(m_platform.platform().desktop, bus),
      m_updater(bundleInformation(), std::move(makeUpdater)),
      m_appearance(bus) {
    const auto take = [this] { Appearance::instance().setDesktop(m_appearance.appearance()); };
    connect(&m_appearance, &AppearanceReader::changed, this, take);
    take();
    m_signalSources = std::make_unique<QuitSignals>([] { QCoreApplication::quit(); });
}

AppDelegate::~AppDelegate() = default;

PortStore &AppDelegate::store() {
    if (!m_store)
        m_store = std::make_unique<PortStore>(m_platform.platform());
    return *m_store;
}

void AppDelegate::copyInstallCommand() {
    m_clipboard.setText(installCommand(executablePath()));
}

PanelActions AppDelegate::panelActions() {
    PanelActions actions;
    actions.openWindow = [this] { showWindow({}); };
    if (m_updater.isAvailable())
        actions.checkForUpdates = [this] { m_updater.checkForUpdates(); };
    actions.copyInstallCommand = [this] { copyInstallCommand(); };
    actions.quit = [] { QCoreApplication::quit(); };
    return actions;
}

WindowActions AppDelegate::windowActions() {
    const PanelActions panel = panelActions();
    return {.openSettings = [this] { m_settings->show(); },
            .checkForUpdates = panel.checkForUpdates,
            .copyInstallCommand = panel.copyInstallCommand,
            .quit = panel.quit};
}

SettingsActions AppDelegate::settingsActions() {
    const BundleInformation &bundle = bundleInformation();
    SettingsActions actions{.version = QString::fromStdString(bundle.version),
                            .build = QString::fromStdString(bundle.build),
                            .copyInstallCommand = [this] { copyInstallCommand(); },
                            .updates = {}};
    if (m_updater.isAvailable())
        actions.updates =
            UpdateChoices{.automaticallyChecks = [this] { return m_updater.automaticallyChecksForUpdates(); },
                          .setAutomaticallyChecks =
                              [this](bool isOn) {
                                  if (!m_updater.setAutomaticallyChecksForUpdates(isOn))
                                      m_store->setError(tr("The settings couldn't be saved."));
                              },
                          .checkNow = [this] { m_updater.checkForUpdates(); },
                          .lastCheck = [this] { return m_updater.lastUpdateCheckDate(); }};
    return actions;
}

ApplicationActions AppDelegate::applicationActions() {
    ApplicationActions actions;
    actions.activate = [this](const QString &token) { showWindow(token); };
    actions.showWindow = actions.activate;
    actions.togglePanel = [this](const QString &token) { togglePanel(token); };
    actions.tell = [this](const QString &dialog) {
        m_platform.platform().notifications.post(
            {.title = "Tarnvale", .body = dialog.toStdString(), .category = {}, .payload = {}});
    };
    actions.quit = [] { QCoreApplication::quit(); };
    return actions;
}

/// What the user sees of the program. Windows are made when they are first wanted.
void AppDelegate::makeFaces() {
    const Platform platform = m_platform.platform();
    registerPanel(m_engine);
    registerWindow(m_engine);
    m_menuBar =
        std::make_unique<MenuBarController>(*m_store, platform, m_engine, *m_hotKey, panelActions(), m_bus);
    m_mainWindow =
        std::make_unique<MainWindowController>(*m_store, platform, m_engine, *m_hotKey, windowActions());
    m_settings = std::make_unique<SettingsWindow>(m_engine, SettingsContext{.store = *m_store,
                                                                            .platform = platform,
                                                                            .hotKey = *m_hotKey,
                                                                            .tray = m_menuBar->tray(),
                                                                            .bus = m_bus,
                                                                            .actions = settingsActions()});
    connect(m_settings.get(), &SettingsWindow::showWebPreviewsChanged, m_mainWindow.get(),
            &MainWindowController::updatePictures);
}

void AppDelegate::finishLaunching(Opening opening) {
    if (m_menuBar)
        return;
    const Platform platform = m_platform.platform();
    PortStore &store = this->store();
    m_updater.start(platform, m_engine);
    m_hotKey = std::make_unique<GlobalHotKey>(platform.settings, chooseRegistrar(m_bus));
    makeFaces();
    store.openWindow = [this] { showWindow({}); };
    m_hotKey->onPress = [this] { m_menuBar->toggle(); };
    connect(m_hotKey.get(), &GlobalHotKey::saveFailed, this, [&store] {
        store.setError(tr("The shortcut couldn't be saved: it is in force until you quit."));
    });
    m_hotKey->setUp();
    m_automation.start(store, applicationActions());
    const bool isWanted = platform.settings.flag(SettingsController::showWindowAtLaunchKey).value_or(true);
    if (opening == Opening::window && isWanted)
        m_mainWindow->show();
    neverStayUnseen();
}

void AppDelegate::serve() {
    constexpr auto idle = 60s;
    m_automation.start(store(), applicationActions());
    m_idleWatch =
        std::make_unique<IdleWatch>(m_automation.queue(), m_platform.platform().clock, idle, [this] {
            if (!m_menuBar)
                QCoreApplication::quit();
        });
}

void AppDelegate::showWindow(const QString &activationToken) {
    finishLaunching();
    m_mainWindow->show(activationToken);
}

void AppDelegate::togglePanel(const QString &activationToken) {
    finishLaunching();
    m_menuBar->toggle(std::nullopt, activationToken);
}

/// Where no tray has come to show the icon, the user would wonder whether the program has started at all.
void AppDelegate::neverStayUnseen() {
    constexpr auto longEnough = TrayIcon::patience + 1s;
    QTimer::singleShot(longEnough, this, [this] {
        if (m_menuBar->tray().kind() == TrayKind::none && !m_menuBar->isOpen() && !m_mainWindow->isVisible())
            m_menuBar->open();
    });
}

} // namespace tarnvale
