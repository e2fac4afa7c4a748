#include "store/PortStore.h"

#include "discovery/isDevPort.h"
#include "platform/Desktop.h"
#include "platform/LoginItem.h"
#include "probes/findLogSource.h"
#include "probes/isLikelyWeb.h"
#include "store/launchLog.h"
#include "store/set.h"

#include "platform/CommandLauncher.h"
#include "platform/Tools.h"

#include <algorithm>
#include <iterator>

namespace tarnvale {

PortStore::PortStore(const Platform &platform, HealthProbe probe)
    : m_platform(platform),
      m_probe(std::move(probe)),
      m_previews(platform.clock, platform.settings, platform.previewCapturer) {
    readStored();
    connectNotifications();
    poll();
}

PortStore::~PortStore() {
    m_platform.notifications.onAction = {};
    for (const auto &[port, tunnel] : m_tunnels)
        tunnel.process->terminate();
}

std::vector<ListeningPort> PortStore::visiblePorts() const {
    if (m_showAll)
        return m_ports;
    std::vector<ListeningPort> visible;
    std::copy_if(m_ports.begin(), m_ports.end(), std::back_inserter(visible), isDevPort);
    return visible;
}

bool PortStore::isWebPort(const ListeningPort &port) const {
    const auto known = m_health.find(port.id());
    if (known == m_health.end() || known->second.kind == Health::Kind::noResponse)
        return isLikelyWeb(port);
    return known->second.kind != Health::Kind::unknown;
}

std::optional<std::string> PortStore::launchLog(const ListeningPort &port) const {
    if (!port.args || !port.cwd)
        return std::nullopt;
    return launchLogURL(m_platform.launcher.logsFolder(), *port.args, *port.cwd);
}

std::optional<LogSource> PortStore::logSource(const ListeningPort &port) const {
    return findLogSource(port, launchLog(port), m_platform.tools);
}

void PortStore::setShowAll(bool showAll) {
    set(m_showAll, showAll, &PortStore::showAllChanged);
}

void PortStore::setMenuOpen(bool isOpen) {
    set(m_isMenuOpen, isOpen, &PortStore::isMenuOpenChanged);
}

void PortStore::setWindowVisible(bool isVisible) {
    set(m_isWindowVisible, isVisible, &PortStore::isWindowVisibleChanged);
}

void PortStore::forgetDownWatchedPorts() {
    set(m_downWatchedPorts, {}, &PortStore::downWatchedPortsChanged);
}

void PortStore::setError(std::optional<QString> error) {
    set(m_error, std::move(error), &PortStore::errorChanged);
}

} // namespace tarnvale
