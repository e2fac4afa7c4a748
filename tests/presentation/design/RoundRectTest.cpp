#include "presentation/design/QmlPage.h"

#include <QImage>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

constexpr const char *onWhite =
    "Rectangle { width: 40; height: 40; color: 'white'\nRoundRect { x: 10; y: 10; width: 20; "
    "height: 20; ";

QImage pictureOf(const std::string &properties) {
    QmlPage page(onWhite + properties + " } }");
    EXPECT_EQ(page.warnings(), "");
    return page.window().grabWindow().convertToFormat(QImage::Format_RGB32);
}

TEST(RoundRect, fillsItsBoundsAndNoMore) {
    const QImage image = pictureOf("color: 'red'");
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(29, 29), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(9, 20), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(30, 20), QColor(Qt::white));
}

TEST(RoundRect, itsCornersAreRound) {
    const QImage image = pictureOf("color: 'red'; radius: 10");
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::white));
    EXPECT_NEAR(image.pixelColor(20, 10).green(), image.pixelColor(20, 29).green(), 3)
        << "the same above and below";
    EXPECT_EQ(image.pixelColor(20, 20), QColor(Qt::red));
}

TEST(RoundRect, aRadiusThatIsTooLargeMakesACircle) {
    EXPECT_EQ(pictureOf("color: 'red'; radius: 500"), pictureOf("color: 'red'; radius: 10"));
}

TEST(RoundRect, itsEdgeLiesInside) {
    const QImage image = pictureOf("color: 'red'; strokeColor: 'blue'; strokeWidth: 2");
    EXPECT_EQ(image.pixelColor(10, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(11, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(12, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(9, 20), QColor(Qt::white));
}

TEST(RoundRect, theSecondColourIsReachedAtTheLowerEnd) {
    const QImage image = pictureOf("color: 'red'; endColor: 'blue'");
    EXPECT_GT(image.pixelColor(20, 10).red(), 230);
    EXPECT_GT(image.pixelColor(20, 29).blue(), 230);
}

TEST(RoundRect, betweenPixelsItsEdgesStaySharp) {
    const QImage image = pictureOf("color: 'red'; transform: Translate { x: 0.4; y: 0.4 }");
    EXPECT_EQ(image.pixelColor(10, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(9, 20), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(30, 20), QColor(Qt::white));
}

TEST(RoundRect, whatIsSeeThroughOrHasNoSizeIsNotThere) {
    const QImage empty = pictureOf("color: 'transparent'");
    EXPECT_EQ(empty.pixelColor(20, 20), QColor(Qt::white));
    EXPECT_EQ(pictureOf("color: 'red'; visible: width > 0; scale: 0"), empty);
}

TEST(RoundRect, itFollowsItsOpacityAndItsClip) {
    EXPECT_NEAR(pictureOf("color: 'black'; opacity: 0.5").pixelColor(20, 20).red(), 128, 2);
    QmlPage page(
        "Rectangle { width: 40; height: 40; color: 'white'\nItem { width: 20; height: 40; clip: true\n"
        "RoundRect { width: 40; height: 40; color: 'red' } } }");
    const QImage image = page.window().grabWindow();
    EXPECT_EQ(image.pixelColor(10, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(30, 20), QColor(Qt::white));
}

TEST(RoundRect, aChangeIsPainted) {
    QmlPage page("RoundRect { width: 40; height: 40; color: 'red' }");
    EXPECT_EQ(page.window().grabWindow().pixelColor(20, 20), QColor(Qt::red));
    page.root()->setProperty("color", QColor(Qt::blue));
    EXPECT_EQ(page.window().grabWindow().pixelColor(20, 20), QColor(Qt::blue));
}

} // namespace
} // namespace tarnvale
