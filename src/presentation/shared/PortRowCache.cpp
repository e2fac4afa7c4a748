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

PortRow PortRowCache::row(const RowEntry &entry, PortGroup group, const PortFacts &facts, Instant now,
                          const ApplicationName &applicationName) {
    std::string age = ageOf(entry.port, now);
    Kept &kept = m_kept[entry.id() + ':' + std::to_string(static_cast<int>(group))];
    const bool isSame = kept.lastUse != 0 && kept.age == age && kept.facts == facts && kept.entry == entry;
    if (!isSame)
        kept = {entry, group, facts, std::move(age), portRow(entry, group, facts, now, applicationName)};
    kept.lastUse = m_round + 1;
    return kept.row;
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
