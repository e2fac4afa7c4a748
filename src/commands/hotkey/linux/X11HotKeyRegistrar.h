#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/linux/PressFilter.h"
#include "commands/hotkey/linux/x11Modifiers.h"
#include "platform/descriptorNotifier.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct xcb_connection_t;
struct xcb_key_press_event_t;

namespace tarnvale {

/// A combination taken from an X server, whatever layout is in use and whichever locks are on, over a
/// connection of our own. Every answer comes at once.
///
/// When the server goes away the combination is gone with it; the next order connects anew.
class X11HotKeyRegistrar : public QObject, public HotKeyRegistrar {
    Q_OBJECT
public:
    /// `display` is the server as in ":0"; empty for that of `DISPLAY`.
    explicit X11HotKeyRegistrar(std::string display = {}) : m_display(std::move(display)) {}
    X11HotKeyRegistrar(const X11HotKeyRegistrar &) = delete;
    X11HotKeyRegistrar &operator=(const X11HotKeyRegistrar &) = delete;
    ~X11HotKeyRegistrar() override { release(); }

    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) override;
    void release() override;
    [[nodiscard]] HotKeyAvailability availability() const override;

    [[nodiscard]] bool isConnected() const { return m_connection != nullptr; }

    /// How often a held key has repeated itself, which nobody is told.
    [[nodiscard]] std::uint64_t repeats() const { return m_repeats; }

private:
    struct Disconnected {
        void operator()(xcb_connection_t *connection) const;
    };

    /// What is taken, on every screen.
    struct Grab {
        std::uint8_t keycode = 0;
        std::vector<std::uint16_t> masks;

        bool operator==(const Grab &) const = default;
    };

    [[nodiscard]] bool connectToServer();
    void disconnectFromServer();
    [[nodiscard]] HotKeyOutcome take(const Shortcut &shortcut);
    [[nodiscard]] HotKeyOutcome take(const Grab &wanted);
    void letGo(const Grab &taken);
    void handleEvents();
    [[nodiscard]] bool isPressOfOurs(const xcb_key_press_event_t &key);
    void followKeyboard();

    std::string m_display;
    std::unique_ptr<xcb_connection_t, Disconnected> m_connection;
    DescriptorNotifier m_notifier; ///< goes before the connection
    std::vector<std::uint32_t> m_roots;
    std::optional<Shortcut> m_shortcut; ///< what is, or was and should be, taken
    Grab m_taken;                       ///< without masks: nothing
    PressFilter m_presses;
    std::uint64_t m_repeats = 0;
    bool m_isMissing = false;
};

} // namespace tarnvale
