#pragma once

#include <QObject>
#include <QString>

#include <map>

namespace tarnvale {

class Clock;

/// What destroys something only at its second press within three seconds. Each key is armed for itself. Main
/// thread.
class Confirmations : public QObject {
    Q_OBJECT

public:
    /// `clock` outlives this object.
    explicit Confirmations(Clock &clock) : m_clock(clock) {}

    /// A press: the first arms `key` for three seconds; true for the second, which disarms it.
    [[nodiscard]] bool confirm(const QString &key);
    [[nodiscard]] bool isArmed(const QString &key) const { return m_armed.contains(key); }
    /// Disarms everything.
    void forget();

Q_SIGNALS:
    void changed();

private:
    Clock &m_clock;
    std::map<QString, int> m_armed; ///< to the number of the press that armed it
    int m_presses = 0;
};

} // namespace tarnvale
