#include "commands/hotkey/linux/X11HotKeyRegistrar.h"

#include "commands/hotkey/PendingAnswer.h"
#include "commands/hotkey/keyPositions.h"

#include <QPointer>

#include <cstdlib>
#include <tuple>
#include <utility>
#include <xcb/xcb.h>

namespace tarnvale {

namespace {

struct Freed {
    void operator()(void *reply) const { std::free(reply); }
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Freed>;

/// What the server says of its keyboard; nothing when the connection breaks.
std::optional<X11Keyboard> readKeyboard(xcb_connection_t *connection) {
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto modifiersAsked = xcb_get_modifier_mapping(connection);
    const auto keysAsked = xcb_get_keyboard_mapping(connection, setup->min_keycode, count);
    const Owned<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersAsked, nullptr));
    const Owned<xcb_get_keyboard_mapping_reply_t> keys(
        xcb_get_keyboard_mapping_reply(connection, keysAsked, nullptr));
    if (!modifiers || !keys)
        return std::nullopt;
    const auto *keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const auto *keysyms = xcb_get_keyboard_mapping_keysyms(keys.get());
    return X11Keyboard{
        .modifierKeycodes = {keycodes, keycodes + xcb_get_modifier_mapping_keycodes_length(modifiers.get())},
        .firstKeycode = setup->min_keycode,
        .keysyms = {keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(keys.get())},
        .keysymsPerKeycode = keys->keysyms_per_keycode};
}

std::vector<std::uint32_t> rootsOf(xcb_connection_t *connection) {
    std::vector<std::uint32_t> roots;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0; xcb_screen_next(&screens))
        roots.push_back(screens.data->root);
    return roots;
}

} // namespace

void X11HotKeyRegistrar::Disconnected::operator()(xcb_connection_t *connection) const {
    xcb_disconnect(connection);
}

QFuture<HotKeyOutcome> X11HotKeyRegistrar::grab(const Shortcut &shortcut, HotKeyOccasion) {
    release();
    m_isMissing = !connectToServer();
    if (m_isMissing)
        return answered(std::unexpected(HotKeyFailure::unavailable));
    const HotKeyOutcome outcome = take(shortcut);
    // Waiting for the answers may have read events that the descriptor won't tell of any more.
    QMetaObject::invokeMethod(this, &X11HotKeyRegistrar::handleEvents, Qt::QueuedConnection);
    return answered(outcome);
}

void X11HotKeyRegistrar::release() {
    if (m_connection)
        letGo(m_taken);
    m_taken = {};
    m_shortcut.reset();
}

HotKeyAvailability X11HotKeyRegistrar::availability() const {
    return {.kind = m_isMissing ? HotKeyAvailability::Kind::none : HotKeyAvailability::Kind::works};
}

bool X11HotKeyRegistrar::connectToServer() {
    if (m_connection && xcb_connection_has_error(m_connection.get()) == 0)
        return true;
    disconnectFromServer();
    m_connection.reset(xcb_connect(m_display.empty() ? nullptr : m_display.c_str(), nullptr));
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_connection.reset();
        return false;
    }
    m_roots = rootsOf(m_connection.get());
    m_notifier = whenReadable(xcb_get_file_descriptor(m_connection.get()), [this] { handleEvents(); });
    return true;
}

void X11HotKeyRegistrar::disconnectFromServer() {
    m_notifier.reset();
    m_connection.reset();
    m_taken = {};
}

HotKeyOutcome X11HotKeyRegistrar::take(const Shortcut &shortcut) {
    const auto keycode = keycodeAt(shortcut.keyCode);
    if (!keycode || !std::in_range<std::uint8_t>(*keycode))
        return std::unexpected(HotKeyFailure::unknownKey);
    const auto keyboard = readKeyboard(m_connection.get());
    if (!keyboard)
        return std::unexpected(HotKeyFailure::unavailable);
    const X11Modifiers modifiers = x11Modifiers(*keyboard);
    const Grab wanted{static_cast<std::uint8_t>(*keycode),
                      withLocks(x11Mask(shortcut.carbonModifiers, modifiers), modifiers)};
    if (wanted == m_taken)
        return {};
    letGo(m_taken);
    m_taken = {};
    const HotKeyOutcome outcome = take(wanted);
    if (outcome) {
        m_taken = wanted;
        m_shortcut = shortcut;
    }
    return outcome;
}

/// Takes all of it or nothing.
HotKeyOutcome X11HotKeyRegistrar::take(const Grab &wanted) {
    constexpr std::uint8_t toUsAlone = 0;
    std::vector<xcb_void_cookie_t> orders; // all sent before the first answer is waited for
    for (const std::uint32_t root : m_roots)
        for (const std::uint16_t mask : wanted.masks)
            orders.push_back(xcb_grab_key_checked(m_connection.get(), toUsAlone, root, mask, wanted.keycode,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    HotKeyOutcome outcome;
    for (const xcb_void_cookie_t order : orders) {
        const Owned<xcb_generic_error_t> error(xcb_request_check(m_connection.get(), order));
        if (error)
            outcome = std::unexpected(error->error_code == XCB_ACCESS ? HotKeyFailure::taken
                                                                      : HotKeyFailure::refused);
    }
    if (xcb_connection_has_error(m_connection.get()) != 0)
        return std::unexpected(HotKeyFailure::unavailable);
    if (!outcome)
        letGo(wanted);
    return outcome;
}

void X11HotKeyRegistrar::letGo(const Grab &taken) {
    for (const std::uint32_t root : m_roots)
        for (const std::uint16_t mask : taken.masks)
            xcb_ungrab_key(m_connection.get(), taken.keycode, root, mask);
    xcb_flush(m_connection.get());
}

void X11HotKeyRegistrar::handleEvents() {
    int presses = 0;
    bool isKeyboardNew = false;
    while (m_connection) {
        const Owned<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (!event && !isKeyboardNew)
            break;
        if (!event)
            followKeyboard();
        isKeyboardNew = event && (isKeyboardNew || event->response_type == XCB_MAPPING_NOTIFY);
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
        if (event && isPressOfOurs(*key))
            ++presses;
    }
    if (m_connection && xcb_connection_has_error(m_connection.get()) != 0)
        disconnectFromServer();
    for (const QPointer<QObject> self(this); self && presses > 0; --presses)
        if (onPress)
            onPress();
}

/// What another program only says was a key has another type.
bool X11HotKeyRegistrar::isPressOfOurs(const xcb_key_press_event_t &key) {
    if (key.response_type == XCB_KEY_RELEASE)
        m_presses.release(key.time);
    if (key.response_type != XCB_KEY_PRESS || m_taken.masks.empty() || key.detail != m_taken.keycode)
        return false;
    const bool isPress = m_presses.isPress(key.time);
    m_repeats += isPress ? 0 : 1;
    return isPress;
}

/// The modifiers may have moved to other bits.
void X11HotKeyRegistrar::followKeyboard() {
    if (const auto shortcut = m_shortcut)
        std::ignore = take(*shortcut);
}

} // namespace tarnvale
