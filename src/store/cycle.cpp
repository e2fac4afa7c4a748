// The repeating scan, and what follows from each.

#include "discovery/Machine.h"
#include "discovery/scanListeningPorts.h"
#include "platform/Clock.h"
#include "store/PortStore.h"
#include "store/set.h"

#include <QCoroFuture>
#include <QPointer>

#include <algorithm>
#include <memory>
#include <unordered_set>

namespace tarnvale {

using namespace std::chrono_literals;

QCoro::Task<> PortStore::poll() {
    const QPointer<PortStore> alive(this);
    while (alive) {
        co_await refresh();
        if (!alive)
            co_return;
        const bool isWatched = m_isMenuOpen || m_isWindowVisible;
        const QFuture<void> slept = m_platform.clock.sleep(isWatched ? 2s : 5s);
        co_await slept;
    }
}

QCoro::Task<> PortStore::refresh() {
    const QPointer<PortStore> alive(this);
    Machine &machine = m_platform.machine;
    const auto scan = [&machine] {
        return std::make_shared<std::vector<ListeningPort>>(scanListeningPorts(machine));
    };
    const QFuture<std::shared_ptr<std::vector<ListeningPort>>> scanned = m_scanner.run(scan);
    ++m_questions;
    const auto ports = co_await scanned;
    if (!alive)
        co_return;
    --m_questions;
    applyScan(std::move(*ports));
    if (!m_watchedPorts.empty())
        learnWhoseWatchedAre();
    if (m_isMenuOpen || m_isWindowVisible) {
        co_await refreshHealth();
        if (!alive)
            co_return;
    }
    if (m_isWindowVisible)
        feedPreviews();
}

QCoro::Task<> PortStore::settleAndRefresh(std::chrono::milliseconds pause) {
    const QPointer<PortStore> alive(this);
    const QFuture<void> slept = m_platform.clock.sleep(pause);
    co_await slept;
    if (alive)
        co_await refresh();
}

void PortStore::applyScan(std::vector<ListeningPort> ports) {
    const bool isChanged = ports != m_ports;
    std::vector<ListeningPort> previous;
    if (isChanged) {
        previous = std::exchange(m_ports, std::move(ports));
        Q_EMIT portsChanged();
    }
    recordUsage();
    auto down = m_downWatchedPorts;
    for (const ListeningPort &port : m_ports)
        down.erase(port.port);
    set(m_downWatchedPorts, std::move(down), &PortStore::downWatchedPortsChanged);
    if (m_hasScanned && isChanged) {
        recordEvents(previous);
        notifyWatchedStops(previous);
    }
    m_hasScanned = true;
}

namespace {

constexpr std::size_t mostSamples = 40;

/// Adds a sample; whether the history is another one now.
bool addSample(std::vector<double> &history, double sample) {
    if (history.size() < mostSamples) {
        history.push_back(sample);
        return true;
    }
    if (std::all_of(history.begin(), history.end(), [&](double old) { return old == sample; }))
        return false;
    history.erase(history.begin());
    history.push_back(sample);
    return true;
}

} // namespace

/// One sample a process and scan, however many ports it has.
void PortStore::recordUsage() {
    std::unordered_set<Pid> live;
    std::unordered_set<Pid> sampled;
    for (const ListeningPort &port : m_ports)
        live.insert(port.pid);
    bool isChanged =
        std::erase_if(m_cpuHistory, [&](const auto &entry) { return !live.contains(entry.first); }) > 0;
    for (const ListeningPort &port : m_ports)
        if (port.cpu && sampled.insert(port.pid).second)
            isChanged = addSample(m_cpuHistory[port.pid], *port.cpu) || isChanged;
    if (isChanged)
        Q_EMIT cpuHistoryChanged();
}

void PortStore::feedPreviews() {
    std::vector<std::int64_t> ports;
    for (const ListeningPort &port : visiblePorts()) {
        const auto known = m_health.find(port.id());
        constexpr std::int64_t firstError = 400;
        if (known != m_health.end() && known->second.kind == Health::Kind::responding &&
            known->second.code < firstError)
            ports.push_back(port.port);
    }
    m_previews.update(ports);
}

} // namespace tarnvale
