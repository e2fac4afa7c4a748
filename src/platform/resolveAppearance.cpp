#include "platform/Appearance.h"

#include "discovery/text.h"

#include <QString>

#include <algorithm>
#include <cmath>

namespace tarnvale {

namespace {

using Color = std::array<double, 3>;

std::optional<bool> isDark(std::optional<std::uint32_t> scheme) {
    if (scheme == 1U)
        return true;
    if (scheme == 2U)
        return false;
    return std::nullopt;
}

std::optional<Color> validColor(const std::optional<Color> &color) {
    const auto isShare = [](double share) { return share >= 0 && share <= 1; };
    return color && std::ranges::all_of(*color, isShare) ? color : std::nullopt;
}

/// "61,174,233"; an opacity behind them is left out.
std::optional<Color> kdeColor(const std::optional<std::string> &text) {
    if (!text)
        return std::nullopt;
    const std::vector<std::string_view> parts = split(*text, ',');
    if (parts.size() < 3 || parts.size() > 4)
        return std::nullopt;
    Color color{};
    for (std::size_t i = 0; i < color.size(); ++i) {
        const auto share = parseInteger<int>(parts[i]);
        if (!share)
            return std::nullopt;
        color[i] = *share / 255.0;
    }
    return validColor(color);
}

std::optional<DesktopFont> font(std::string_view family, std::string_view points) {
    constexpr double smallest = 4;
    constexpr double largest = 40;
    constexpr std::size_t longest = 100;
    bool isNumber = false;
    const double size = QByteArrayView(points.data(), static_cast<qsizetype>(points.size()))
                            .toByteArray()
                            .toDouble(&isNumber);
    if (!isNumber || !(size >= smallest && size <= largest) || family.empty() || family.size() > longest)
        return std::nullopt;
    return DesktopFont{.family = std::string(family), .points = size};
}

/// "Cantarell 11", "DejaVu Sans, 10": the last word is the size.
std::optional<DesktopFont> gnomeFont(std::string_view text) {
    const std::size_t blank = text.rfind(' ');
    if (blank == std::string_view::npos)
        return std::nullopt;
    std::string_view family = text.substr(0, blank);
    while (family.ends_with(' ') || family.ends_with(','))
        family.remove_suffix(1);
    return font(family, text.substr(blank + 1));
}

/// "Noto Sans,10,-1,5,50,0,0,0,0,0" (QFont::toString).
std::optional<DesktopFont> kdeFont(std::string_view text) {
    const std::vector<std::string_view> parts = split(text, ',');
    return parts.size() < 2 ? std::nullopt : font(parts[0], parts[1]);
}

/// Only KDE's own desktop says what is in its settings; those of GNOME are there on most desktops.
std::optional<DesktopFont> desktopFont(const AppearanceValues &values) {
    std::optional<DesktopFont> font = values.kdeFont ? kdeFont(*values.kdeFont) : std::nullopt;
    return font || !values.gnomeFont ? font : gnomeFont(*values.gnomeFont);
}

double textScale(std::optional<double> factor) {
    constexpr double smallest = 0.5;
    constexpr double largest = 3;
    return factor && std::isfinite(*factor) && *factor > 0 ? std::clamp(*factor, smallest, largest) : 1;
}

} // namespace

DesktopAppearance resolveAppearance(const AppearanceValues &values) {
    const std::optional<Color> accent = validColor(values.accentColor);
    return {.isDark = isDark(values.colorScheme),
            .highContrast = values.contrast == 1U || values.gnomeHighContrast == true,
            .reduceMotion = values.reducedMotion == 1U || values.enableAnimations == false ||
                            values.animationDurationFactor == 0.0,
            .accent = accent ? accent : kdeColor(values.kdeAccent),
            .textScale = textScale(values.textScalingFactor),
            .font = desktopFont(values)};
}

} // namespace tarnvale
