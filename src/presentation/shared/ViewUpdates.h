#pragma once

#include <QObject>

#include <functional>
#include <initializer_list>

namespace tarnvale {

class Clock;
class PortStore;

/// When a view is worked out anew: as it comes into sight, then once for all that the store tells at one
/// time, and every two seconds, since ages grow without any change. Never while it is out of sight, unless
/// asked. Main thread.
class ViewUpdates : public QObject {
public:
    /// `clock` outlives this object.
    ViewUpdates(Clock &clock, std::function<void()> update);

    /// Each of these signals of `store` counts as a change.
    void follow(PortStore &store, std::initializer_list<void (PortStore::*)()> changes);

    [[nodiscard]] bool isShown() const { return m_isShown; }
    /// The view comes into sight, and is brought up to date before this returns; or it goes.
    void setShown(bool isShown);

    /// Something has changed.
    void schedule();
    /// Brings the view up to date before this returns.
    void update();

private:
    void keepAges();

    Clock &m_clock;
    std::function<void()> m_update;
    bool m_isShown = false;
    bool m_isDue = false;
    bool m_keepsAges = false;
};

} // namespace tarnvale
