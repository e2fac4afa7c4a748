#include "presentation/tray/trayGlyph.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const QColor ink(10, 200, 30);

/// Half transparent pixels count as none.
bool isInk(const QImage &image, int x, int y) {
    const QColor colour = image.pixelColor(x, y);
    return colour.alpha() == 255 && colour.rgb() == ink.rgb();
}

bool isRed(const QImage &image, int x, int y) {
    const QColor colour = image.pixelColor(x, y);
    return colour.alpha() == 255 && colour.red() > 200 && colour.green() < 100 && colour.blue() < 100;
}

class TrayGlyphSizes : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(all, TrayGlyphSizes, testing::Values(16, 18, 20, 22, 24, 32, 36, 48, 64, 96),
                         testing::PrintToStringParamName());

TEST_P(TrayGlyphSizes, theOutlineIsCrispAndItsInsideAndOutsideAreEmpty) {
    const int size = GetParam();
    const QImage image = trayGlyph(size, ink, false);
    ASSERT_EQ(image.size(), QSize(size, size));
    // Down a column right of the text bars: nothing, the top edge, the title bar, the line, the page, the
    // bottom edge, nothing; and never a blurred pixel.
    const int x = size * 12 / 18;
    int changes = 0;
    for (int y = 0; y < size; ++y) {
        const int alpha = image.pixelColor(x, y).alpha();
        EXPECT_TRUE(alpha == 0 || alpha == 255) << y;
        changes += y > 0 && alpha != image.pixelColor(x, y - 1).alpha() ? 1 : 0;
    }
    EXPECT_EQ(changes, 6);
    EXPECT_EQ(image.pixelColor(x, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(x, size - 1).alpha(), 0);
}

TEST_P(TrayGlyphSizes, theSidesAreCrisp) {
    const int size = GetParam();
    const QImage image = trayGlyph(size, ink, false);
    const int y = size * 23 / 36; // between the text bars or on one of them
    int left = 0;
    while (left < size && !isInk(image, left, y))
        EXPECT_EQ(image.pixelColor(left++, y).alpha(), 0);
    int right = size - 1;
    while (right >= 0 && !isInk(image, right, y))
        EXPECT_EQ(image.pixelColor(right--, y).alpha(), 0);
    EXPECT_NEAR(left, size * 0.8 / 18, 0.51);
    EXPECT_NEAR(right + 1, size * 17.2 / 18, 0.51);
    EXPECT_EQ(left, size - 1 - right); // as far from either side
}

TEST_P(TrayGlyphSizes, theCornersAreRoundAndTransparent) {
    const int size = GetParam();
    const QImage image = trayGlyph(size, ink, false);
    for (const int x : {0, size - 1})
        for (const int y : {0, size - 1})
            EXPECT_EQ(image.pixelColor(x, y).alpha(), 0);
    // The first row of ink begins right of the first column of ink.
    int top = 0;
    while (top < size && image.pixelColor(size / 2, top).alpha() == 0)
        ++top;
    int left = 0;
    while (left < size && image.pixelColor(left, size / 2).alpha() == 0)
        ++left;
    EXPECT_LT(image.pixelColor(left, top).alpha(), 128);
}

TEST_P(TrayGlyphSizes, everyPartIsThere) {
    const int size = GetParam();
    const QImage image = trayGlyph(size, ink, false);
    const auto at = [size](double points) { return static_cast<int>(points * size / 18); };
    EXPECT_GT(image.pixelColor(at(4.3), at(4.4)).alpha(), 100) << "the dot of the title bar";
    const auto inkBetween = [&](double x, double from, double to) {
        for (int y = at(from); y <= at(to); ++y)
            if (isInk(image, at(x), y))
                return true;
        return false;
    };
    EXPECT_TRUE(inkBetween(7, 9, 11)) << "the first text bar";
    EXPECT_TRUE(inkBetween(9.5, 9, 11)) << "the first text bar's end";
    EXPECT_TRUE(inkBetween(7, 12, 14)) << "the second text bar";
    EXPECT_FALSE(inkBetween(9.5, 12, 14)) << "the second text bar is shorter";
}

TEST_P(TrayGlyphSizes, anAlarmIsARedDotInTheUpperRightCorner) {
    const int size = GetParam();
    const QImage image = trayGlyph(size, ink, true);
    const int radius = size * 7 / 36;
    EXPECT_TRUE(isRed(image, size - 1 - radius, radius));
    EXPECT_GT(image.pixelColor(size - 1, radius).alpha(), 100) << "touches the right edge";
    EXPECT_GT(image.pixelColor(size - 1 - radius, 0).alpha(), 100) << "touches the top edge";
    EXPECT_LT(image.pixelColor(size - 1, 0).alpha(), 64) << "is round";
    EXPECT_FALSE(isRed(image, size - 1 - radius, size * 15 / 36)) << "is no larger";
}

TEST_P(TrayGlyphSizes, anAlarmChangesNothingElse) {
    const int size = GetParam();
    const QImage calm = trayGlyph(size, ink, false);
    const QImage alarm = trayGlyph(size, ink, true);
    const int dot = size * 7 / 18 + 1;
    const QRect left(0, 0, size - dot, size);
    const QRect below(0, dot, size, size - dot);
    EXPECT_EQ(calm.copy(left), alarm.copy(left));
    EXPECT_EQ(calm.copy(below), alarm.copy(below));
    EXPECT_NE(calm, alarm);
}

TEST(TrayGlyphTest, thereIsNoneWithoutASize) {
    EXPECT_TRUE(trayGlyph(0, ink, false).isNull());
    EXPECT_TRUE(trayGlyph(-5, ink, true).isNull());
    EXPECT_EQ(trayGlyph(1, ink, true).size(), QSize(1, 1));
}

TEST(TrayGlyphTest, aTransparentInkStaysSo) {
    const QImage image = trayGlyph(18, QColor(0, 0, 0, 128), false);
    EXPECT_NEAR(image.pixelColor(9, 2).alpha(), 128, 1);
}

} // namespace
} // namespace tarnvale
