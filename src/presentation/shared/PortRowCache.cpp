#include "presentation/shared/PortRowCache.h"

#include "discovery/formatUptime.h"

namespace tarnvale {

namespace {

std::string ageOf(const ListeningPort &port, Instant now) {
    if (!port.startedAt)
        return {};
    return formatUptime(std::chrono::duration<double>(now - *port.startedAt).count());
}

} // namespace

Shared<PortRow> PortRowCache::row(const RowEntry &entry, PortGroup group, const PortFacts &facts, Instant now,
                                  const ApplicationName &applicationName) {
    const Key key{entry.port->pid, entry.port->port, group};
    std::string age = ageOf(entry.port, now);
    auto found = m_kept.find(key);
    if (found == m_kept.end() || found->second.age != age || found->second.facts != facts ||
        found->second.entry != entry)
        found = m_kept
                    .insert_or_assign(key, Kept{entry, facts, std::move(age),
                                                portRow(entry, group, facts, now, applicationName)})
                    .first;
    found->second.lastUse = m_round + 1;
    return found->second.row;
}

void PortRowCache::age(Instant now) {
    constexpr auto rest = std::chrono::minutes(1);
    if (now >= m_agedAt && now - m_agedAt < rest)
        return;
    m_agedAt = now;
    std::erase_if(m_kept, [this](const auto &each) { return each.second.lastUse < m_round; });
    ++m_round;
}

} // namespace tarnvale
