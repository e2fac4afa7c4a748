#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "presentation/shared/KeyedListModel.h"
#include "presentation/tray/TrayIcon.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// What the desktop offers of the things that we live in.
struct DesktopFacts {
    enum class Notifications : std::uint8_t { asked, found, missing };

    TrayKind tray = TrayKind::none;
    HotKeyAvailability hotKey;
    bool hasHotKey = false;  ///< a press reaches us
    std::string hotKeyLabel; ///< "Alt+Super+P"
    Notifications notifications = Notifications::asked;
    QString notificationServer; ///< its name and version; plain text
    bool isComposited = false;  ///< windows may be translucent

    bool operator==(const DesktopFacts &) const = default;
};

/// One of them in words.
struct DesktopRow {
    QString id;
    QString symbol;
    QString name;
    QString found;  ///< what is there
    QString advice; ///< how to get what isn't; empty when nothing is missing
    bool isMissing = false;
    bool isKnown = true; ///< else it is being looked for

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<DesktopRow>> &roles();

    bool operator==(const DesktopRow &) const = default;
};

/// Tray, hot key, notifications and compositor, in this order. What is missing has one sentence of advice.
[[nodiscard]] std::vector<DesktopRow> desktopRows(const DesktopFacts &facts);

} // namespace tarnvale
