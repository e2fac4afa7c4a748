#pragma once

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace tarnvale {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, in place of the program's sudden death.
/// At most one exists at a time.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> quit);
    QuitSignals(const QuitSignals &) = delete;
    QuitSignals &operator=(const QuitSignals &) = delete;
    /// The signals do again what they did before.
    ~QuitSignals();

private:
    static constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};

    std::array<struct sigaction, signals.size()> m_before{}; ///< what they did
    std::array<int, 2> m_ends{-1, -1}; ///< of a socket pair: what the handler writes to, what is read
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tarnvale
