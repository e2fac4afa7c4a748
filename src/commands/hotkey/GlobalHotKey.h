#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

namespace tarnvale {

class Settings;

/// The one combination of keys that opens the panel from any application: which it is, across runs, and that
/// the system knows. Main thread. What it does is logged under "hotkey".
class GlobalHotKey : public QObject {
    Q_OBJECT
public:
    /// The combination is the stored one, or the default when none can be read. Nothing is taken yet.
    GlobalHotKey(Settings &settings, std::unique_ptr<HotKeyRegistrar> registrar);
    GlobalHotKey(const GlobalHotKey &) = delete;
    GlobalHotKey &operator=(const GlobalHotKey &) = delete;
    ~GlobalHotKey() override;

    /// What a press does. Set before `setUp`.
    std::function<void()> onPress;

    [[nodiscard]] const Shortcut &current() const { return m_current; }
    /// The system tells us when `current()` is pressed.
    [[nodiscard]] bool isTaken() const { return m_isTaken; }
    [[nodiscard]] HotKeyAvailability availability() const { return m_registrar->availability(); }

    /// Takes `current()`; when that fails the default instead, for this run alone. Later calls do nothing.
    void setUp();

    /// Takes `shortcut` and stores it; true when it is now ours. Otherwise the old one is taken back, and
    /// what is stored stays. When a call comes while another waits for the user, the earlier one is over:
    /// false.
    QCoro::Task<bool> apply(Shortcut shortcut);

Q_SIGNALS:
    void currentChanged();
    /// It may have: an order has been answered, or the desktop has bound other keys.
    void availabilityChanged();
    /// The new combination works but couldn't be written down.
    void saveFailed();

private:
    using Self = QPointer<GlobalHotKey>;

    static QCoro::Task<> takeFirst(Self self, std::uint64_t round);
    static QCoro::Task<bool> exchange(Self self, Shortcut shortcut);
    static QCoro::Task<bool> take(Self self, Shortcut shortcut, HotKeyOccasion occasion);

    void handlePress();
    void setCurrent(const Shortcut &shortcut);
    void save();

    Settings &m_settings;
    std::unique_ptr<HotKeyRegistrar> m_registrar;
    Shortcut m_current;
    bool m_isSetUp = false;
    bool m_isTaken = false;
    std::uint64_t m_round = 0; ///< of orders; what an earlier one had in mind doesn't count any more
};

} // namespace tarnvale
