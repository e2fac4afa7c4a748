#include "presentation/settings/WelcomeController.h"

#include "commands/hotkey/GlobalHotKey.h"
#include "presentation/shared/hotKeyTexts.h"
#include "store/PortStore.h"

namespace tarnvale {

WelcomeController::WelcomeController(PortStore &store, GlobalHotKey &hotKey,
                                     std::function<void()> copyInstallCommand)
    : m_store(store), m_hotKey(hotKey), m_copyInstallCommand(std::move(copyInstallCommand)) {
    connect(&store, &PortStore::launchAtLoginChanged, this, &WelcomeController::launchAtLoginChanged);
    connect(&hotKey, &GlobalHotKey::currentChanged, this, &WelcomeController::hotKeyChanged);
    connect(&hotKey, &GlobalHotKey::availabilityChanged, this, &WelcomeController::hotKeyChanged);
}

QStringList WelcomeController::hotKeyCaps() const {
    return tarnvale::hotKeyCaps(m_hotKey);
}

QString WelcomeController::hotKeyCommand() const {
    return tarnvale::hotKeyCommand(m_hotKey);
}

bool WelcomeController::launchAtLogin() const {
    return m_store.launchAtLogin();
}

void WelcomeController::setLaunchAtLogin(bool isWanted) {
    m_store.setLaunchAtLogin(isWanted);
}

void WelcomeController::allowNotifications() {
    m_store.requestNotificationAuthorization();
    if (!std::exchange(m_notificationsAsked, true))
        Q_EMIT notificationsAskedChanged();
}

void WelcomeController::copyInstallCommand() {
    m_copyInstallCommand();
    if (!std::exchange(m_copied, true))
        Q_EMIT copiedChanged();
}

void WelcomeController::finish() {
    Q_EMIT done();
}

} // namespace tarnvale
