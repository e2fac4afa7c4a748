#include "presentation/design/QmlPage.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/legible.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

class Theme : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { Appearance::instance().setOverride(GetParam(), std::nullopt); }
    void TearDown() override {
        Appearance::instance().setDesktop({});
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }

    QColor color(const char *name) { return page.theme(name).value<QColor>(); }

    QmlPage page{"Item {}"};
};

INSTANTIATE_TEST_SUITE_P(LightAndDark, Theme, testing::Bool());

TEST_P(Theme, textCanBeReadOnEveryGround) {
    for (const char *ground : {"surface", "surfaceRaised"}) {
        for (const char *ink : {"ink", "inkSecondary", "inkTertiary", "dangerText", "link"})
            EXPECT_GE(contrast(color(ink), color(ground)), 4.5) << ink << " on " << ground;
    }
    EXPECT_GE(contrast(color("inkOn"), color("accent")), 4.5);
    EXPECT_GE(contrast(color("inkOn"), color("danger")), 4.5);
}

TEST_P(Theme, everyStandardColourStandsOut) {
    for (const char *name :
         {"blue", "brown", "cyan", "gray", "green", "orange", "pink", "purple", "red", "teal"})
        EXPECT_GE(contrast(color(name), color("surface")), 3.0) << name;
    EXPECT_GE(contrast(color("focusRing"), color("surface")), 3.0);
}

TEST_P(Theme, whateverAccentADesktopHasItCanBeReadOn) {
    for (const std::array<double, 3> &accent : std::vector<std::array<double, 3>>{
             {1, 1, 1}, {0, 0, 0}, {1, 1, 0}, {0, 1, 1}, {0.5, 0.5, 0.5}, {0.2, 0.52, 0.89}}) {
        Appearance::instance().setDesktop({.accent = accent});
        EXPECT_GE(contrast(color("inkOn"), color("accent")), 4.5);
        EXPECT_GE(contrast(color("link"), color("surface")), 4.5);
        EXPECT_GE(contrast(color("focusRing"), color("surface")), 3.0);
    }
}

TEST_P(Theme, withoutMotionNothingTakesTime) {
    EXPECT_GT(page.theme("quick").toInt(), 0);
    Appearance::instance().setDesktop({.reduceMotion = true});
    for (const char *duration : {"quick", "fade", "springDuration"})
        EXPECT_EQ(page.theme(duration).toInt(), 0) << duration;
}

TEST_P(Theme, textFollowsTheDesktopsSize) {
    EXPECT_EQ(page.theme("size13").toInt(), 13);
    Appearance::instance().setDesktop({.font = DesktopFont{.family = "No such family", .points = 16.5}});
    EXPECT_EQ(page.theme("size13").toInt(), 20);
    EXPECT_FALSE(page.theme("fontFamily").toString().isEmpty());
    EXPECT_NE(page.theme("fontFamily").toString(), QStringLiteral("No such family"));
}

TEST(Appearance, theDesktopsWordGoesBeforeThePalette) {
    Appearance &appearance = Appearance::instance();
    appearance.setDesktop({.isDark = true});
    EXPECT_TRUE(appearance.isDark());
    appearance.setDesktop({.isDark = false});
    EXPECT_FALSE(appearance.isDark());
    appearance.setOverride(true, std::nullopt);
    EXPECT_TRUE(appearance.isDark());
    appearance.setOverride(std::nullopt, std::nullopt);
    appearance.setDesktop({});
}

TEST(Appearance, usualTextSizesAreTheThemesOwn) {
    EXPECT_EQ(fontScale(9), 1);
    EXPECT_EQ(fontScale(10), 1);
    EXPECT_EQ(fontScale(11), 1);
    EXPECT_DOUBLE_EQ(fontScale(16.5), 1.5);
    EXPECT_DOUBLE_EQ(fontScale(4.5), 0.5);
    EXPECT_EQ(fontScale(-1), 1) << "a font that is set in pixels";
}

TEST(Legible, aColourThatStandsOutStaysAsItIs) {
    EXPECT_EQ(legible(Qt::black, Qt::white, 4.5), QColor(Qt::black));
}

TEST(Legible, othersBecomeDarkerOrLighter) {
    const QColor cream(0xFB, 0xF0, 0xDF);
    EXPECT_GE(contrast(legible(cream, Qt::white, 3), Qt::white), 3);
    const QColor navy(0x02, 0x56, 0x9B);
    EXPECT_GE(contrast(legible(navy, QColor(0x24, 0x24, 0x28), 4), QColor(0x24, 0x24, 0x28)), 4);
    EXPECT_GE(contrast(legible(Qt::white, Qt::white, 4.5), Qt::white), 4.5) << "a gray has no hue";
    EXPECT_DOUBLE_EQ(contrast(Qt::white, Qt::black), 21);
}

} // namespace
} // namespace tarnvale
