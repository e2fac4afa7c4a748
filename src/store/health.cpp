// When ports are probed, and what becomes of the results.

#include "platform/Clock.h"
#include "platform/Settings.h"
#include "probes/isLikelyWeb.h"
#include "probes/isValidHealthPath.h"
#include "store/PortStore.h"
#include "store/set.h"
#include "store/settingsKeys.h"
#include "store/trimmedBlanks.h"

#include <QCoroFuture>
#include <QPointer>

#include <set>

namespace tarnvale {

using namespace std::chrono_literals;

struct PortStore::DueCheck {
    std::string key;
    std::int64_t port = 0;
    std::string path;
};

QCoro::Task<> PortStore::refreshHealth() {
    const QPointer<PortStore> alive(this);
    const std::vector<DueCheck> due = takeDueChecks();
    std::vector<QFuture<HealthCheck::Result>> checks;
    checks.reserve(due.size());
    for (const DueCheck &check : due)
        checks.push_back(m_probe(check.port, check.path, 1500ms));
    std::map<std::string, HealthCheck::Result> results;
    for (std::size_t i = 0; i < due.size(); ++i) {
        const HealthCheck::Result result = co_await checks[i];
        results[due[i].key] = result;
    }
    if (alive && !due.empty())
        applyHealth(results);
}

/// The checks that are due. They count as made from now on, so that a second pass doesn't make them too.
std::vector<PortStore::DueCheck> PortStore::takeDueChecks() {
    constexpr auto spacing = 30s;
    const Instant now = m_platform.clock.now();
    std::vector<DueCheck> due;
    for (const ListeningPort &port : visiblePorts()) {
        const std::string key = port.id();
        const auto checked = m_healthCheckedAt.find(key);
        if (!isLikelyWeb(port) || (checked != m_healthCheckedAt.end() && now - checked->second <= spacing))
            continue;
        const auto path = m_healthPaths.find(std::to_string(port.port));
        due.push_back({key, port.port, path == m_healthPaths.end() ? "/" : path->second});
    }
    for (const DueCheck &check : due)
        m_healthCheckedAt[check.key] = now;
    return due;
}

void PortStore::applyHealth(const std::map<std::string, HealthCheck::Result> &results) {
    std::set<std::string> listed;
    for (const ListeningPort &port : m_ports)
        listed.insert(port.id());
    const auto isGone = [&](const auto &entry) { return !listed.contains(entry.first); };
    auto health = m_health;
    auto times = m_responseTimes;
    std::erase_if(health, isGone);
    std::erase_if(times, isGone);
    for (const auto &[key, result] : results) {
        health[key] = result.health;
        if (result.milliseconds)
            times[key] = *result.milliseconds;
        else
            times.erase(key);
    }
    set(m_health, std::move(health), &PortStore::healthChanged);
    set(m_responseTimes, std::move(times), &PortStore::responseTimesChanged);
}

void PortStore::setHealthPath(const std::string &path, const ListeningPort &port) {
    const std::string trimmed = trimmedBlanks(path);
    auto paths = m_healthPaths;
    if (isValidHealthPath(trimmed) && trimmed != "/")
        paths[std::to_string(port.port)] = trimmed;
    else
        paths.erase(std::to_string(port.port));
    set(m_healthPaths, std::move(paths), &PortStore::healthPathsChanged);
    noteStored(m_platform.settings.setTexts(keys::healthPaths, m_healthPaths));
    m_healthCheckedAt.erase(port.id());
    refreshHealth();
}

} // namespace tarnvale
