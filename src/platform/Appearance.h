#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tarnvale {

/// What a desktop says about the looks that its user prefers, as it says it. Nothing: it doesn't say.
struct AppearanceValues {
    // org.freedesktop.appearance
    std::optional<std::uint32_t> colorScheme;         ///< 0 no preference, 1 dark, 2 light
    std::optional<std::uint32_t> contrast;            ///< 1 higher
    std::optional<std::uint32_t> reducedMotion;       ///< 1 reduced
    std::optional<std::array<double, 3>> accentColor; ///< sRGB from 0 to 1; outside of it: none is set
    // org.gnome.desktop.interface and org.gnome.desktop.a11y.interface
    std::optional<bool> enableAnimations;
    std::optional<double> textScalingFactor;
    std::optional<std::string> gnomeFont; ///< as in "Cantarell 11"
    std::optional<bool> gnomeHighContrast;
    // org.kde.kdeglobals
    std::optional<double> animationDurationFactor; ///< 0 for none
    std::optional<std::string> kdeAccent;          ///< as in "61,174,233"
    std::optional<std::string> kdeFont;            ///< as in "Noto Sans,10,-1,5,50,0,0,0,0,0"

    bool operator==(const AppearanceValues &) const = default;
};

/// The font of a desktop's own texts.
struct DesktopFont {
    std::string family;
    double points = 0; ///< from 4 to 40

    bool operator==(const DesktopFont &) const = default;
};

/// How the user wants programs to look.
struct DesktopAppearance {
    std::optional<bool> isDark; ///< nothing: the desktop has no preference or isn't asked
    bool highContrast = false;
    bool reduceMotion = false;
    std::optional<std::array<double, 3>> accent; ///< sRGB from 0 to 1
    double textScale = 1;                        ///< on top of the font's size, from 0.5 to 3
    std::optional<DesktopFont> font;

    bool operator==(const DesktopAppearance &) const = default;
};

/// What `values` come to. One that makes no sense counts as not said; a wish for less motion or more contrast
/// counts whoever says it.
[[nodiscard]] DesktopAppearance resolveAppearance(const AppearanceValues &values);

} // namespace tarnvale
