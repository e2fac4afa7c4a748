#include "platform/Appearance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarnvale {
namespace {

struct Row {
    const char *reason;
    AppearanceValues said;
    DesktopAppearance wanted;
};

using Color = std::array<double, 3>;

TEST(ResolveAppearance, aDesktopThatSaysNothingHasNoWishes) {
    EXPECT_EQ(resolveAppearance({}), DesktopAppearance{});
}

TEST(ResolveAppearance, eachValueMeansOneThing) {
    const std::vector<Row> rows{
        {"no preference", {.colorScheme = 0}, {}},
        {"dark", {.colorScheme = 1}, {.isDark = true}},
        {"light", {.colorScheme = 2}, {.isDark = false}},
        {"a scheme of the future", {.colorScheme = 3}, {}},
        {"more contrast", {.contrast = 1}, {.highContrast = true}},
        {"usual contrast", {.contrast = 0}, {}},
        {"GNOME's high contrast", {.gnomeHighContrast = true}, {.highContrast = true}},
        {"one says usual, the other high",
         {.contrast = 0, .gnomeHighContrast = true},
         {.highContrast = true}},
        {"reduced motion", {.reducedMotion = 1}, {.reduceMotion = true}},
        {"GNOME without animations", {.enableAnimations = false}, {.reduceMotion = true}},
        {"GNOME with animations", {.enableAnimations = true}, {}},
        {"a wish for less counts, whoever says it",
         {.reducedMotion = 0, .enableAnimations = false},
         {.reduceMotion = true}},
        {"KDE at no speed", {.animationDurationFactor = 0}, {.reduceMotion = true}},
        {"KDE at half speed", {.animationDurationFactor = 0.5}, {}},
    };
    for (const Row &row : rows)
        EXPECT_EQ(resolveAppearance(row.said), row.wanted) << row.reason;
}

TEST(ResolveAppearance, anAccentIsAColourOrNone) {
    EXPECT_EQ(resolveAppearance({.accentColor = Color{0, 0.5, 1}}).accent, (Color{0, 0.5, 1}));
    EXPECT_EQ(resolveAppearance({.kdeAccent = "255,0,51"}).accent, (Color{1, 0, 0.2}));
    EXPECT_EQ(resolveAppearance({.kdeAccent = "255,0,51,128"}).accent, (Color{1, 0, 0.2}));
    EXPECT_EQ(resolveAppearance({.accentColor = Color{1, 1, 1}, .kdeAccent = "0,0,0"}).accent,
              (Color{1, 1, 1}));
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    for (const Color &bad : {Color{-1, -1, -1}, Color{0, 0, 1.01}, Color{none, 0, 0}})
        EXPECT_EQ(resolveAppearance({.accentColor = bad}).accent, std::nullopt);
    for (const char *bad : {"", "1,2", "256,0,0", "-1,0,0", "1,2,3,4,5", "red", "1,2,x", "1,,2"})
        EXPECT_EQ(resolveAppearance({.kdeAccent = bad}).accent, std::nullopt) << bad;
}

TEST(ResolveAppearance, aTextScaleStaysWithinReason) {
    const std::vector<std::pair<double, double>> rows{{1.25, 1.25}, {0.1, 0.5},        {99, 3},      {0, 1},
                                                      {-2, 1},      {std::nan(""), 1}, {HUGE_VAL, 1}};
    for (const auto &[said, wanted] : rows)
        EXPECT_EQ(resolveAppearance({.textScalingFactor = said}).textScale, wanted) << said;
}

TEST(ResolveAppearance, aFontIsAFamilyAndASize) {
    const std::vector<std::pair<std::string, std::optional<DesktopFont>>> gnome{
        {"Cantarell 11", DesktopFont{"Cantarell", 11}},
        {"DejaVu Sans Bold 10.5", DesktopFont{"DejaVu Sans Bold", 10.5}},
        {"Noto Sans,  10", DesktopFont{"Noto Sans", 10}},
        {"Cantarell", std::nullopt},
        {"11", std::nullopt},
        {" 11", std::nullopt},
        {"Cantarell 0", std::nullopt},
        {"Cantarell 1000", std::nullopt},
        {"Cantarell nan", std::nullopt},
        {std::string(200, 'x') + " 11", std::nullopt},
        {"", std::nullopt}};
    for (const auto &[said, wanted] : gnome)
        EXPECT_EQ(resolveAppearance({.gnomeFont = said}).font, wanted) << said;
    const std::vector<std::pair<std::string, std::optional<DesktopFont>>> kde{
        {"Noto Sans,10,-1,5,50,0,0,0,0,0", DesktopFont{"Noto Sans", 10}},
        {"Noto Sans", std::nullopt},
        {",10", std::nullopt},
        {"Noto Sans,-1", std::nullopt}};
    for (const auto &[said, wanted] : kde)
        EXPECT_EQ(resolveAppearance({.kdeFont = said}).font, wanted) << said;
}

TEST(ResolveAppearance, onKdeItsOwnFontIsTheDesktops) {
    EXPECT_EQ(resolveAppearance({.gnomeFont = "Cantarell 11", .kdeFont = "Noto Sans,10"}).font,
              (DesktopFont{"Noto Sans", 10}));
    EXPECT_EQ(resolveAppearance({.gnomeFont = "Cantarell 11", .kdeFont = "odd"}).font,
              (DesktopFont{"Cantarell", 11}));
}

} // namespace
} // namespace tarnvale
