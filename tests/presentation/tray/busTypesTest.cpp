#include "presentation/tray/busTypes.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray result;
    for (const int value : values)
        result.append(static_cast<char>(value));
    return result;
}

TEST(BusTypesTest, aPixmapIsAlphaRedGreenBlueRowByRow) {
    QImage image(2, 2, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(1, 2, 3, 255));
    image.setPixelColor(1, 0, QColor(4, 5, 6, 7));
    image.setPixelColor(0, 1, QColor(0, 0, 0, 0));
    image.setPixelColor(1, 1, QColor(255, 254, 253, 252));
    EXPECT_EQ(trayPixmap(image),
              (TrayPixmap{2, 2, bytes({255, 1, 2, 3, 7, 4, 5, 6, 0, 0, 0, 0, 252, 255, 254, 253})}));
}

TEST(BusTypesTest, coloursAreNotPremultiplied) {
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(200, 100, 0, 128));
    const TrayPixmap pixmap = trayPixmap(image);
    EXPECT_EQ(static_cast<uchar>(pixmap.bytes[0]), 128);
    EXPECT_NEAR(static_cast<uchar>(pixmap.bytes[1]), 200, 2);
    EXPECT_NEAR(static_cast<uchar>(pixmap.bytes[2]), 100, 2);
}

TEST(BusTypesTest, noImageIsAnEmptyPixmap) {
    EXPECT_EQ(trayPixmap(QImage()), TrayPixmap());
}

} // namespace
} // namespace tarnvale
