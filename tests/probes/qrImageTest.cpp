#include "probes/qrImage.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

constexpr int scale = 8;
constexpr int margin = 4;

/// The modules of a picture, the margin left out.
class Modules {
public:
    explicit Modules(const QrImage &image) : m_image(image), m_side(image.side / scale - 2 * margin) {}

    [[nodiscard]] int side() const { return m_side; }
    [[nodiscard]] bool isDark(int x, int y) const {
        const int row = (y + margin) * scale;
        const int column = (x + margin) * scale;
        return m_image.pixels[static_cast<std::size_t>(row * m_image.side + column)] == 0;
    }

private:
    const QrImage &m_image;
    int m_side;
};

/// The error correction level in the format bits beside the first corner (ISO/IEC 18004, 7.9): 0 is M.
int levelOf(const Modules &code) {
    const int masked = (code.isDark(8, code.side() - 1) ? 2 : 0) | (code.isDark(8, code.side() - 2) ? 1 : 0);
    return masked ^ 0b10;
}

TEST(QrImageTest, aModuleIsEightPixelsWideAndHigh) {
    const auto image = qrImage("http://192.168.1.20:5173");
    ASSERT_TRUE(image);
    ASSERT_EQ(image->side % scale, 0);
    ASSERT_EQ(image->pixels.size(),
              static_cast<std::size_t>(image->side) * static_cast<std::size_t>(image->side));
    const auto at = [&](int x, int y) {
        return image->pixels[static_cast<std::size_t>(y * image->side + x)];
    };
    for (int y = 0; y < image->side; ++y)
        for (int x = 0; x < image->side; ++x) {
            ASSERT_EQ(at(x, y), at(x - x % scale, y - y % scale));
            ASSERT_TRUE(at(x, y) == 0 || at(x, y) == 255);
        }
}

TEST(QrImageTest, finderPatternsStandInThreeCorners) {
    const auto image = qrImage("http://192.168.1.20:5173");
    ASSERT_TRUE(image);
    const Modules code(*image);
    ASSERT_EQ(code.side(), 25) << "24 bytes fit version 2 at level M, and not version 1";
    const auto isFinder = [&](int left, int top) {
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 7; ++x) {
                const int ring = std::max(std::abs(x - 3), std::abs(y - 3));
                if (code.isDark(left + x, top + y) != (ring != 2))
                    return false;
            }
        return true;
    };
    EXPECT_TRUE(isFinder(0, 0));
    EXPECT_TRUE(isFinder(18, 0));
    EXPECT_TRUE(isFinder(0, 18));
    EXPECT_FALSE(isFinder(18, 18));
}

TEST(QrImageTest, theMarginIsWhite) {
    const auto image = qrImage("x");
    ASSERT_TRUE(image);
    for (int i = 0; i < image->side; ++i)
        for (int depth = 0; depth < margin * scale; ++depth) {
            EXPECT_EQ(image->pixels[static_cast<std::size_t>(depth * image->side + i)], 255);
            EXPECT_EQ(image->pixels[static_cast<std::size_t>(i * image->side + depth)], 255);
        }
}

TEST(QrImageTest, theLevelIsMEvenWhereMoreWouldFit) {
    for (const std::string text : {"x", "http://10.0.0.1:80", "http://192.168.100.200:65535"}) {
        const auto image = qrImage(text);
        ASSERT_TRUE(image);
        EXPECT_EQ(levelOf(Modules(*image)), 0) << text;
    }
}

TEST(QrImageTest, otherTextsGiveOtherPictures) {
    EXPECT_NE(qrImage("http://10.0.0.1:80"), qrImage("http://10.0.0.1:81"));
    EXPECT_EQ(qrImage("http://10.0.0.1:80"), qrImage("http://10.0.0.1:80"));
    EXPECT_TRUE(qrImage("")) << "an empty text is a text";
    EXPECT_NE(qrImage(std::string(3, '\0')), qrImage("")) << "NUL is a byte like any other";
}

TEST(QrImageTest, aTextThatIsTooLongGivesNone) {
    const auto largest = qrImage(std::string(2331, 'x'));
    ASSERT_TRUE(largest);
    EXPECT_EQ(Modules(*largest).side(), 177);
    EXPECT_FALSE(qrImage(std::string(2332, 'x')));
    EXPECT_FALSE(qrImage(std::string(10'000'000, 'x')));
}

} // namespace
} // namespace tarnvale
