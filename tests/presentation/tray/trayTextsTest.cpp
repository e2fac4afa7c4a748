#include "presentation/tray/trayTexts.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(TrayTextsTest, withoutAnAlarmItIsTheName) {
    EXPECT_EQ(trayToolTip({}), QStringLiteral("Tarnvale"));
    EXPECT_EQ(trayAccessibleText({}), QStringLiteral("Tarnvale"));
}

TEST(TrayTextsTest, oneStoppedPortIsNamed) {
    EXPECT_EQ(trayToolTip({5173}), QStringLiteral("Stopped: port 5173"));
    EXPECT_EQ(trayAccessibleText({5173}), QStringLiteral("Tarnvale — a watched port stopped"));
}

TEST(TrayTextsTest, severalStandInAscendingOrder) {
    EXPECT_EQ(trayToolTip({8080, 3000, 10000}), QStringLiteral("Stopped: ports 3000, 8080, 10000"));
    EXPECT_EQ(trayAccessibleText({8080, 3000}), QStringLiteral("Tarnvale — a watched port stopped"));
}

TEST(TrayTextsTest, anyNumberIsShownAsItIs) {
    EXPECT_EQ(trayToolTip({-1, 70000}), QStringLiteral("Stopped: ports -1, 70000"));
}

} // namespace
} // namespace tarnvale
