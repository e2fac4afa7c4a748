#pragma once

#include "commands/hotkey/FakeRegistrar.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "presentation/settings/SettingsController.h"
#include "presentation/shared/screenItems.h"
#include "store/StoreTest.h"

#include <QKeyEvent>
#include <QQuickItem>

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// A key as a window on X11 tells it.
struct NativeKey {
    Qt::Key key;
    std::uint32_t keycode;
    std::uint32_t keysym;
};

inline constexpr NativeKey keyK{Qt::Key_K, 45, 0x6b};
inline constexpr NativeKey keyEscape{Qt::Key_Escape, 9, 0xff1b};

/// A store, a hot key and what settings ask of the application, all made up.
class SettingsTest : public StoreTest {
protected:
    void SetUp() override;

    /// What the application does, written down.
    [[nodiscard]] SettingsActions actions();
    [[nodiscard]] UpdateChoices updates();

    /// Sends a press and a release to a window.
    void press(QObject &window, const NativeKey &key, Qt::KeyboardModifiers modifiers = {});

    std::vector<std::string> done;
    bool checksForUpdates = true;
    std::optional<Instant> lastCheck;
    FakeRegistrar *registrar = nullptr;
    std::unique_ptr<GlobalHotKey> hotKey;
};

/// The texts that are shown.
[[nodiscard]] std::vector<std::string> shownTexts(QQuickItem *root);

} // namespace tarnvale
