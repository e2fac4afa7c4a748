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

PanelActions AppDelegate::panelActions() {
    PanelActions actions;
    if (m_updater.isAvailable())
        actions.checkForUpdates = [this] { m_updater.checkForUpdates(); };
    actions.copyInstallCommand = [this] { m_clipboard.setText(installCommand(executablePath())); };
    actions.quit = [] { QCoreApplication::quit(); };
    return actions;
}

ApplicationActions AppDelegate::applicationActions() {
    ApplicationActions actions;
    actions.activate = [this](const QString &token) { showPanel(token); };
    actions.togglePanel = [this](const QString &token) { togglePanel(token); };
    actions.tell = [this](const QString &dialog) {
        m_platform.platform().notifications.post(
            {.title = "Tarnvale", .body = dialog.toStdString(), .category = {}, .payload = {}});
    };
    actions.quit = [] { QCoreApplication::quit(); };
    return actions;
}

void AppDelegate::finishLaunching() {
    if (m_menuBar)
        return;
    const Platform platform = m_platform.platform();
    PortStore &store = this->store();
    m_updater.start();
    registerPanel(m_engine);
    m_hotKey = std::make_unique<GlobalHotKey>(platform.settings, chooseRegistrar(m_bus));
    m_menuBar =
        std::make_unique<MenuBarController>(store, platform, m_engine, *m_hotKey, panelActions(), m_bus);
    store.openWindow = [this] { showPanel({}); };
    m_hotKey->onPress = [this] { m_menuBar->toggle(); };
    connect(m_hotKey.get(), &GlobalHotKey::saveFailed, this, [&store] {
        store.setError(tr("The shortcut couldn't be saved: it is in force until you quit."));
    });
    m_hotKey->setUp();
    m_automation.start(store, applicationActions());
    neverStayUnseen();
}

void AppDelegate::serve() {
    constexpr auto idle = 60s;
    m_automation.start(store(), applicationActions());
    QTimer::singleShot(idle, this, [this] {
        if (!m_menuBar)
            QCoreApplication::quit();
    });
}

void AppDelegate::showPanel(const QString &activationToken) {
    finishLaunching();
    qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    if (!m_menuBar->isOpen())
        m_menuBar->open();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void AppDelegate::togglePanel(const QString &activationToken) {
    finishLaunching();
    qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    m_menuBar->toggle();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

/// Where no tray has come to show the icon, the user would wonder whether the program has started at all.
void AppDelegate::neverStayUnseen() {
    constexpr auto longEnough = TrayIcon::patience + 1s;
    QTimer::singleShot(longEnough, this, [this] {
        if (m_menuBar->tray().kind() == TrayKind::none && !m_menuBar->isOpen())
            m_menuBar->open();
    });
}

} // namespace tarnvale
