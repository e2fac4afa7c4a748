#pragma once

#include "commands/hotkey/Shortcut.h"

#include <QFuture>

#include <expected>
#include <functional>
#include <string>

namespace tarnvale {

/// Why a combination isn't ours. The numbers are what the log shows.
enum class HotKeyFailure {
    taken = 1,   ///< something else holds it
    refused,     ///< by the user, or by the desktop for a reason of its own
    unavailable, ///< what would be asked isn't there, or has gone away
    unknownKey,  ///< no such key on this system
    abandoned,   ///< another order came before the answer
};

using HotKeyOutcome = std::expected<void, HotKeyFailure>;

/// What leads to an order, for desktops that ask the user before they bind a combination.
enum class HotKeyOccasion {
    start,      ///< nobody has chosen anything just now: ask at most once ever
    userChoice, ///< ask
    takeBack,   ///< after a failure: don't ask
};

/// Whether and how a combination works on this desktop, for a page of settings.
struct HotKeyAvailability {
    enum class Kind {
        works,
        desktopDecides, ///< the desktop may have bound other keys, and lets the user change them
        needsCommand,   ///< only what the user has the desktop bind to `command` works
        none,
    };

    Kind kind = Kind::works;
    std::string trigger{}; ///< the keys in the desktop's words, empty when it tells none
    std::string command{}; ///< for `needsCommand`

    bool operator==(const HotKeyAvailability &) const = default;
};

/// Takes one combination of keys for us, system-wide. Main thread; at most one is taken at a time.
class HotKeyRegistrar {
public:
    HotKeyRegistrar() = default;
    HotKeyRegistrar(const HotKeyRegistrar &) = delete;
    HotKeyRegistrar &operator=(const HotKeyRegistrar &) = delete;
    virtual ~HotKeyRegistrar() = default;

    /// Called on the main thread, once for each press however long it lasts.
    std::function<void()> onPress;

    /// Called when `availability` has changed by itself.
    std::function<void()> onAvailabilityChange;

    /// Takes `shortcut` after letting go of what was taken. The answer may wait for the user, and always
    /// comes: the next order and the end of this object are one, too.
    [[nodiscard]] virtual QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) = 0;

    virtual void release() = 0;

    /// What the last order has taught; before that, what is likely.
    [[nodiscard]] virtual HotKeyAvailability availability() const = 0;
};

} // namespace tarnvale
