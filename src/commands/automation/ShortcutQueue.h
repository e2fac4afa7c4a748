#pragma once

#include "commands/automation/shortcuts.h"

#include <QObject>

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace tarnvale {

/// What the shortcuts work on. The store comes to be during the start of the program, after its ways in.
struct ShortcutTarget {
    Desktop &desktop;
    QPointer<PortStore> store;
    PortScan scan = [] { return scanListeningPorts(); };
};

/// The shortcuts for any number of callers at once: a bounded number of them waits for an answer, and those
/// who ask for the same share the work. Main thread. Who still waits when this goes gets no answer.
class ShortcutQueue : public QObject {
    Q_OBJECT
public:
    /// `target` outlives this.
    explicit ShortcutQueue(const ShortcutTarget &target) : m_target(target) {}

    /// How many may wait.
    static constexpr std::size_t mostWaiting = 16;

    using ListAnswer = std::function<void(const DevPorts &)>;
    using FreeAnswer = std::function<void(const QString &dialog)>;
    using SearchAnswer = std::function<void(const std::vector<ListeningPort> &ports)>;

    /// Lists, by a scan that begins after this call. False, and no answer, when too many wait.
    [[nodiscard]] bool list(ListAnswer answer);

    /// Frees. Who asks for the same while it is being done gets the same answer, so that nothing is asked to
    /// end twice. False, and no answer, when too many wait.
    [[nodiscard]] bool free(std::int64_t port, std::optional<Pid> expected, FreeAnswer answer);

    void open(std::int64_t port);

    /// Hands over the ports that a search looks through: those of the last scan, at once, or of the first one
    /// when the program has only just started. None without a store, or when too many wait.
    void search(SearchAnswer answer);

    /// Whether somebody waits, or anything was asked since the last call of this.
    [[nodiscard]] bool takeUse();

private:
    using Freed = std::pair<std::int64_t, std::optional<Pid>>;

    [[nodiscard]] bool takePlace();
    QCoro::Task<> runLists();
    QCoro::Task<> runFree(Freed freed);
    QCoro::Task<> runSearches();

    const ShortcutTarget &m_target;
    std::size_t m_waiting = 0;
    bool m_isListing = false;
    bool m_isUsed = false;
    std::vector<ListAnswer> m_lists; ///< for the next scan
    std::map<Freed, std::vector<FreeAnswer>> m_frees;
    std::vector<SearchAnswer> m_searches; ///< for the first scan
};

} // namespace tarnvale
