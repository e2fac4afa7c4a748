#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <map>

namespace tarnvale {

class Clock;

constexpr std::chrono::milliseconds armedFor{4000};        ///< a stop, for its second press
constexpr std::chrono::milliseconds confirmedWithin{3000}; ///< a deletion, for its second press
constexpr std::chrono::milliseconds copiedFor{1200};       ///< what is shown as just copied

/// Keys that are held for a while only: what is armed for its second press, what has just been copied. Main
/// thread.
class MomentaryKeys : public QObject {
    Q_OBJECT

public:
    /// Whether each key is held for itself, or a key takes the place of the one before.
    enum class Capacity : std::uint8_t { one, any };

    /// `clock` outlives this object.
    MomentaryKeys(Clock &clock, std::chrono::milliseconds duration, Capacity capacity = Capacity::one)
        : m_clock(clock), m_duration(duration), m_capacity(capacity) {}

    /// Holds `key` from now on for the whole duration.
    void hold(const QString &key);
    /// A press: the first holds `key`; true for the second within the duration, which lets go of it.
    [[nodiscard]] bool confirm(const QString &key);

    [[nodiscard]] bool contains(const QString &key) const { return m_held.contains(key); }
    /// The key that is held, one of them if there are several; empty when there is none.
    [[nodiscard]] QString key() const { return m_held.empty() ? QString() : m_held.begin()->first; }
    /// Lets go of all.
    void clear();

Q_SIGNALS:
    void changed();

private:
    void release(const QString &key, int hold);

    Clock &m_clock;
    std::chrono::milliseconds m_duration;
    Capacity m_capacity;
    std::map<QString, int> m_held; ///< to the number of the hold, which tells it from later ones
    int m_holds = 0;
};

} // namespace tarnvale
