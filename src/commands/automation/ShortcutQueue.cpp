#include "commands/automation/ShortcutQueue.h"

namespace tarnvale {

bool ShortcutQueue::takePlace() {
    m_isUsed = true;
    if (m_waiting == mostWaiting)
        return false;
    ++m_waiting;
    return true;
}

bool ShortcutQueue::list(ListAnswer answer) {
    if (!takePlace())
        return false;
    m_lists.push_back(std::move(answer));
    if (!m_isListing)
        runLists();
    return true;
}

bool ShortcutQueue::free(std::int64_t port, std::optional<Pid> expected, FreeAnswer answer) {
    if (!takePlace())
        return false;
    const Freed freed(port, expected);
    auto &answers = m_frees[freed];
    answers.push_back(std::move(answer));
    if (answers.size() == 1)
        runFree(freed);
    return true;
}

void ShortcutQueue::open(std::int64_t port) {
    m_isUsed = true;
    openPort(m_target.desktop, port);
}

void ShortcutQueue::search(SearchAnswer answer) {
    m_isUsed = true;
    if (!m_target.store || m_target.store->hasScanned()) {
        answer(m_target.store ? m_target.store->visiblePorts() : std::vector<ListeningPort>());
        return;
    }
    if (!takePlace()) {
        answer({});
        return;
    }
    m_searches.push_back(std::move(answer));
    if (m_searches.size() == 1)
        runSearches();
}

bool ShortcutQueue::takeUse() {
    return std::exchange(m_isUsed, false) || m_waiting > 0;
}

QCoro::Task<> ShortcutQueue::runLists() {
    const QPointer<ShortcutQueue> alive(this);
    m_isListing = true;
    while (!m_lists.empty()) {
        const auto answers = std::exchange(m_lists, {});
        const DevPorts ports = co_await listDevPorts(m_target.store, m_target.scan);
        if (!alive)
            co_return;
        m_waiting -= answers.size();
        for (const ListAnswer &answer : answers)
            answer(ports);
        if (!alive)
            co_return;
    }
    m_isListing = false;
}

QCoro::Task<> ShortcutQueue::runFree(Freed freed) {
    const QPointer<ShortcutQueue> alive(this);
    const QString dialog = co_await freePort(m_target.store, freed.first, freed.second);
    if (!alive)
        co_return;
    const auto answers = std::move(m_frees.extract(freed).mapped());
    m_waiting -= answers.size();
    for (const FreeAnswer &answer : answers)
        answer(dialog);
}

QCoro::Task<> ShortcutQueue::runSearches() {
    const QPointer<ShortcutQueue> alive(this);
    co_await m_target.store->refresh();
    if (!alive)
        co_return;
    const auto ports = m_target.store ? m_target.store->visiblePorts() : std::vector<ListeningPort>();
    const auto answers = std::exchange(m_searches, {});
    m_waiting -= answers.size();
    for (const SearchAnswer &answer : answers)
        answer(ports);
}

} // namespace tarnvale
