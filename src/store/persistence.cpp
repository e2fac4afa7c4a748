// What outlives the program.

#include "platform/Clock.h"
#include "platform/LoginItem.h"
#include "platform/Settings.h"
#include "store/PortStore.h"
#include "store/set.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"

namespace tarnvale {

/// What can't be read starts empty, and stays stored until it is written anew.
void PortStore::readStored() {
    const Settings &settings = m_platform.settings;
    if (const auto ports = settings.integers(keys::watchedPorts))
        m_watchedPorts = {ports->begin(), ports->end()};
    if (const auto json = settings.bytes(keys::stacks))
        m_stacks = decodeStacks(*json).value_or(std::vector<Stack>());
    if (const auto json = settings.bytes(keys::events))
        m_events = decodeEvents(*json).value_or(std::vector<PortEvent>());
    if (m_events.size() > mostEvents)
        m_events.resize(mostEvents);
    m_healthPaths = settings.texts(keys::healthPaths).value_or(std::map<std::string, std::string>());
    m_launchAtLogin = m_platform.loginItem.status() == LoginItem::Status::enabled;
}

void PortStore::setStacks(std::vector<Stack> stacks) {
    set(m_stacks, std::move(stacks), &PortStore::stacksChanged);
    noteStored(m_platform.settings.setBytes(keys::stacks, encodeStacks(m_stacks)));
}

void PortStore::setEvents(std::vector<PortEvent> events) {
    set(m_events, std::move(events), &PortStore::eventsChanged);
    noteStored(m_platform.settings.setBytes(keys::events, encodeEvents(m_events)));
}

void PortStore::recordEvents(const std::vector<ListeningPort> &previous) {
    if (auto events = withChanges(m_events, previous, m_ports, m_platform.clock.now()))
        setEvents(std::move(*events));
}

void PortStore::clearHistory() {
    set(m_events, {}, &PortStore::eventsChanged);
    noteStored(m_platform.settings.remove(keys::events));
}

void PortStore::noteStored(bool isStored) {
    if (!isStored && !m_reportedUnstored)
        setError(tr("Couldn't save to the settings file. What was saved before is still there."));
    m_reportedUnstored = !isStored;
}

void PortStore::setLaunchAtLogin(bool isEnabled) {
    LoginItem &item = m_platform.loginItem;
    const auto changed = isEnabled ? item.enable() : item.disable();
    if (changed)
        setError(std::nullopt);
    else
        setError(tr("Couldn't change launch at login: %1").arg(QString::fromStdString(changed.error())));
    const LoginItem::Status status = item.status();
    if (status == LoginItem::Status::requiresApproval)
        item.openSystemSettings();
    set(m_launchAtLogin, status == LoginItem::Status::enabled, &PortStore::launchAtLoginChanged);
}

} // namespace tarnvale
