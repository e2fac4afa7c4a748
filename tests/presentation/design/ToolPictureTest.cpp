#include "presentation/design/QmlPage.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnvale {
namespace {

QImage pictureOf(const std::string &properties) {
    QmlPage page("Rectangle { width: 40; height: 40; color: 'white'\nToolPicture { width: 40; height: 40; " +
                 properties + " } }");
    EXPECT_EQ(page.warnings(), "");
    return page.window().grabWindow().convertToFormat(QImage::Format_RGB32);
}

int darkestLightness(const QImage &image) {
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            darkest = std::min(darkest, image.pixelColor(x, y).lightness());
    return darkest;
}

TEST(ToolPicture, isALogoOrElseASymbolOnARoundGround) {
    const QImage logo = pictureOf("logo: 'logo-vite'; symbol: 'globe'; tint: '#9135ff'");
    const QImage symbol = pictureOf("symbol: 'globe'; tint: '#9135ff'");
    EXPECT_NE(logo, symbol);
    EXPECT_EQ(logo, pictureOf("logo: 'logo-vite'; tint: '#9135ff'"));
    EXPECT_EQ(logo.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_NE(logo.pixelColor(20, 1), QColor(Qt::white));
}

TEST(ToolPicture, theGroundFadesDownwards) {
    const QImage light = pictureOf("tint: '#9135ff'");
    EXPECT_LT(light.pixelColor(20, 38).lightness(), light.pixelColor(20, 1).lightness());
    const QImage dark = pictureOf("tint: '#9135ff'; dark: true");
    EXPECT_GT(dark.pixelColor(20, 38).lightness(), dark.pixelColor(20, 1).lightness());
}

TEST(ToolPicture, aColourTooLightForItsGroundIsDarkened) {
    EXPECT_LT(darkestLightness(pictureOf("symbol: 'globe'; tint: '#ffffaa'")), 170);
}

TEST(ToolPicture, withoutADrawingOnlyTheGroundIsThere) {
    EXPECT_EQ(pictureOf("symbol: 'no.such.symbol'; tint: 'red'"), pictureOf("tint: 'red'"));
}

TEST(ToolPicture, aChangeIsPainted) {
    QmlPage page("ToolPicture { width: 40; height: 40; symbol: 'globe'; tint: 'red' }");
    const QImage before = page.window().grabWindow();
    page.root()->setProperty("symbol", QStringLiteral("clock"));
    EXPECT_NE(page.window().grabWindow(), before);
}

} // namespace
} // namespace tarnvale
