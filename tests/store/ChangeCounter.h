#pragma once

#include <QObject>

namespace tarnvale {

/// Counts how often a signal is emitted.
class ChangeCounter {
public:
    template<typename Sender, typename Signal> ChangeCounter(Sender *sender, Signal signal) {
        m_connection = QObject::connect(sender, signal, [this] { ++m_count; });
    }
    ChangeCounter(const ChangeCounter &) = delete;
    ChangeCounter &operator=(const ChangeCounter &) = delete;
    ~ChangeCounter() { QObject::disconnect(m_connection); }

    [[nodiscard]] int count() const { return m_count; }

private:
    int m_count = 0;
    QMetaObject::Connection m_connection;
};

} // namespace tarnvale
