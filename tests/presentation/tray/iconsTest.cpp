// The drawn icons, as they are in the program.

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

constexpr const char *application = ":/icons/dev.tarnvale.Tarnvale.svg";
constexpr const char *symbolic = ":/icons/dev.tarnvale.Tarnvale-symbolic.svg";
constexpr const char *alarm = ":/icons/dev.tarnvale.Tarnvale-alarm-symbolic.svg";

QImage rendered(const char *path, int size) {
    QSvgRenderer renderer{QString::fromLatin1(path)};
    EXPECT_TRUE(renderer.isValid()) << path;
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

QByteArray sourceOf(const char *path) {
    QFile file(QString::fromLatin1(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

TEST(IconsTest, theApplicationIconHasALiveDot) {
    for (const int size : {16, 32, 48, 128, 256}) {
        const QImage image = rendered(application, size);
        const QColor dot = image.pixelColor(size * 192 / 256, size * 176 / 256);
        EXPECT_GT(dot.green(), dot.red() + 60) << size;
        EXPECT_GT(dot.green(), dot.blue() + 40) << size;
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << size;
        EXPECT_EQ(image.pixelColor(size / 2, size / 2).alpha(), 255) << size;
    }
}

TEST(IconsTest, theSymbolicIconIsOfOneColourAndCrispAtItsOwnSize) {
    const QImage image = rendered(symbolic, 16);
    for (int y = 0; y < 16; ++y) {
        const int alpha = image.pixelColor(11, y).alpha();
        const bool isInk = y == 2 || y == 6 || y == 13;
        EXPECT_EQ(alpha, isInk ? 255 : 0) << y;
    }
    EXPECT_FALSE(sourceOf(symbolic).contains("stroke"));
}

TEST(IconsTest, theAlarmIconAddsARedDot) {
    const QColor dot = rendered(alarm, 16).pixelColor(12, 3);
    EXPECT_EQ(dot.alpha(), 255);
    EXPECT_GT(dot.red(), dot.green() + 100);
}

// GTK gives its colours to what is filled, and its error colour to the class "error"; KDE goes by the style
// sheet "current-color-scheme".
TEST(IconsTest, desktopsCanRecolourTheSymbolicIcons) {
    for (const char *path : {symbolic, alarm}) {
        const QByteArray source = sourceOf(path);
        EXPECT_TRUE(source.contains("fill=\"currentColor\"")) << path;
        EXPECT_TRUE(source.contains("id=\"current-color-scheme\"")) << path;
        EXPECT_TRUE(source.contains("class=\"ColorScheme-Text\"")) << path;
    }
    EXPECT_TRUE(sourceOf(alarm).contains("class=\"ColorScheme-NegativeText error\""));
    EXPECT_FALSE(sourceOf(symbolic).contains("error"));
}

} // namespace
} // namespace tarnvale
