#include "presentation/window/Sparkline.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

QImage painted(const QList<double> &values, QSize size = {60, 30}) {
    Sparkline line;
    line.setSize(size);
    line.setProperty("values", QVariant::fromValue(values));
    line.setProperty("tint", QColor(Qt::red));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    line.paint(&painter);
    return image;
}

/// How many pixels of that column have any colour.
int inked(const QImage &image, int x) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        count += image.pixelColor(x, y).alpha() > 0 ? 1 : 0;
    return count;
}

TEST(SparklinePoints, spreadFromEdgeToEdge) {
    EXPECT_THAT(sparklinePoints({0, 5, 10}, {100, 40}),
                ElementsAre(QPointF(0, 40), QPointF(50, 20), QPointF(100, 0)));
}

TEST(SparklinePoints, theLargestValueIsTheScale) {
    EXPECT_THAT(sparklinePoints({50, 200, 100}, {20, 10}),
                ElementsAre(QPointF(0, 7.5), QPointF(10, 0), QPointF(20, 5)));
}

TEST(SparklinePoints, aProcessNearIdleDrawsALowLine) {
    EXPECT_THAT(sparklinePoints({2, 2}, {10, 100}), ElementsAre(QPointF(0, 60), QPointF(10, 60)));
    EXPECT_THAT(sparklinePoints({0, 0}, {10, 100}), ElementsAre(QPointF(0, 100), QPointF(10, 100)));
    EXPECT_THAT(sparklinePoints({5, 5}, {10, 100}), ElementsAre(QPointF(0, 0), QPointF(10, 0)));
}

TEST(SparklinePoints, oneSampleIsOnePointAtTheLeft) {
    EXPECT_THAT(sparklinePoints({2.5}, {100, 40}), ElementsAre(QPointF(0, 20)));
}

TEST(SparklinePoints, noSamplesAreNoPoints) {
    EXPECT_TRUE(sparklinePoints({}, {100, 40}).isEmpty());
}

TEST(Sparkline, hasAGroundBeneathItsLine) {
    const QImage image = painted({5, 5, 5});
    for (const int x : {10, 30, 50}) {
        EXPECT_GE(inked(image, x), 28) << x;
        EXPECT_GT(image.pixelColor(x, 0).alpha(), image.pixelColor(x, 10).alpha()) << "the line itself";
        EXPECT_GT(image.pixelColor(x, 10).alpha(), image.pixelColor(x, 25).alpha()) << "the ground fades";
    }
}

TEST(Sparkline, ofOneSampleIsAPoint) {
    const QImage image = painted({2.5});
    EXPECT_GT(inked(image, 0), 0);
    EXPECT_EQ(inked(image, 5), 0);
}

TEST(Sparkline, withoutSamplesIsEmpty) {
    const QImage image = painted({});
    for (int x = 0; x < image.width(); ++x)
        ASSERT_EQ(inked(image, x), 0);
}

TEST(Sparkline, staysWithinItsFrameWhateverItsSize) {
    for (const QSize size : {QSize(1, 1), QSize(2, 40), QSize(300, 2)})
        EXPECT_FALSE(painted({1, 90, 3}, size).isNull());
}

} // namespace
} // namespace tarnvale
