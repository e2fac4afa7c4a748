#include "presentation/tray/activationPoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tarnvale {

/// For messages of failed tests.
void PrintTo(const ScreenPoint &at, std::ostream *stream) {
    *stream << "(" << at.point.x() << ", " << at.point.y() << ") on screen " << at.screen;
}

namespace {

/// A screen without panels. Its origin is the same among device pixels unless said otherwise, as on X11.
ScreenFrame screen(const QRect &geometry, double scale = 1, std::optional<QPoint> nativeOrigin = {}) {
    return {geometry, geometry, scale, nativeOrigin.value_or(geometry.topLeft())};
}

const std::vector plain{screen({0, 0, 1920, 1080})};
const std::vector doubled{screen({0, 0, 1920, 1080}, 2)};
const std::vector oneQuarter{screen({0, 0, 1536, 864}, 1.25)};
const std::vector oneHalf{screen({0, 0, 1280, 720}, 1.5)};
/// 4K at 2x with a plain one on its right, as Qt has them on X11.
const std::vector mixed{screen({0, 0, 1920, 1080}, 2), screen({3840, 0, 1920, 1080})};
/// The same as a Wayland desktop lays them out.
const std::vector mixedWayland{screen({0, 0, 1920, 1080}, 2),
                               screen({1920, 0, 1920, 1080}, 1, QPoint(3840, 0))};
/// One to the left of the first and above it.
const std::vector negative{screen({0, 0, 1920, 1080}), screen({-1280, -300, 1280, 1024})};

struct Case {
    const char *what;
    const std::vector<ScreenFrame> &screens;
    QPoint place;
    std::optional<ScreenPoint> expected;
};

const std::vector<Case> cases{
    {"at scale 1 both readings are the same", plain, {1800, 10}, ScreenPoint{{1800, 10}, 0}},
    {"the first pixel", plain, {0, 0}, ScreenPoint{{0, 0}, 0}},
    {"the last pixel", plain, {1919, 1079}, ScreenPoint{{1919, 1079}, 0}},
    {"just outside", plain, {1920, 10}, std::nullopt},
    {"above", plain, {10, -1}, std::nullopt},
    {"device pixels that can't be logical", doubled, {3800, 20}, ScreenPoint{{1900, 10}, 0}},
    {"either, so device pixels", doubled, {1900, 20}, ScreenPoint{{950, 10}, 0}},
    {"an odd device pixel", doubled, {3839, 2159}, ScreenPoint{{1919, 1079}, 0}},
    {"neither", doubled, {3840, 20}, std::nullopt},
    {"at 1.25", oneQuarter, {1900, 15}, ScreenPoint{{1520, 12}, 0}},
    {"at 1.25, the last", oneQuarter, {1919, 1079}, ScreenPoint{{1535, 863}, 0}},
    {"at 1.5", oneHalf, {1900, 16}, ScreenPoint{{1266, 10}, 0}},
    {"two screens, device pixels of the scaled", mixed, {3800, 20}, ScreenPoint{{1900, 10}, 0}},
    {"two screens, the plain", mixed, {5700, 10}, ScreenPoint{{5700, 10}, 1}},
    {"two screens, its first pixel", mixed, {3840, 0}, ScreenPoint{{3840, 0}, 1}},
    {"Wayland, device pixels", mixedWayland, {5700, 10}, ScreenPoint{{3780, 10}, 1}},
    {"Wayland, either, so device pixels of the first", mixedWayland, {3700, 10}, ScreenPoint{{1850, 5}, 0}},
    {"left of the first", negative, {-10, -200}, ScreenPoint{{-10, -200}, 1}},
    {"beside the one on the left", negative, {-10, 900}, std::nullopt},
    {"far away", negative, {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}, std::nullopt},
    {"far away, the other way", mixed, {std::numeric_limits<int>::min(), 0}, std::nullopt},
};

TEST(ActivationPointTest, aPlaceIsReadInTheUnitThatFits) {
    for (const Case &row : cases)
        EXPECT_EQ(resolveActivation(row.place, row.screens), row.expected) << row.what;
}

TEST(ActivationPointTest, logicalPixelsAreTakenWhereDevicePixelsAreNone) {
    // The device pixels of this screen begin far to the right.
    const std::vector screens{screen({0, 0, 1000, 1000}, 2, QPoint(4000, 0))};
    EXPECT_EQ(resolveActivation({900, 5}, screens), (ScreenPoint{{900, 5}, 0}));
    EXPECT_EQ(resolveActivation({4100, 10}, screens), (ScreenPoint{{50, 5}, 0}));
}

TEST(ActivationPointTest, withoutScreensThereIsNoPlace) {
    EXPECT_EQ(resolveActivation({1, 1}, {}), std::nullopt);
    EXPECT_EQ(screenAt({1, 1}, {}), std::nullopt);
}

TEST(ActivationPointTest, aPointIsOnOneScreenOrNone) {
    EXPECT_EQ(screenAt({1919, 0}, mixed), 0u);
    EXPECT_EQ(screenAt({1920, 0}, mixed), std::nullopt);
    EXPECT_EQ(screenAt({3840, 0}, mixed), 1u);
}

} // namespace
} // namespace tarnvale
