#include "discovery/linux/ContainerAnswer.h"

#include <algorithm>
#include <utility>

namespace tarnvale {

const ContainerMap &ContainerAnswer::get(Key key, std::chrono::nanoseconds now,
                                         const std::function<ContainerMap()> &ask) {
    using namespace std::chrono_literals;
    if (key == m_key && now < m_expires)
        return m_containers;
    m_containers = ask();
    const bool isComplete = std::all_of(key.begin(), key.end(), [&](const auto &proxy) {
        return m_containers.contains(std::get<std::int64_t>(proxy));
    });
    m_expires = now + (isComplete ? 60s : 10s);
    m_key = std::move(key);
    return m_containers;
}

} // namespace tarnvale
