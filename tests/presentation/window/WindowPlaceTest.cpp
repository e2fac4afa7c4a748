#include "presentation/window/WindowPlace.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

constexpr QSize preferred{1080, 700};
constexpr QSize least{800, 560};
const QRect laptop(0, 30, 1440, 870);
const QRect besides(1440, 0, 1920, 1080);

QRect left(const QRect &frame, const std::vector<QRect> &screens) {
    return frameFor(WindowPlace{frame, false}, preferred, least, screens);
}

TEST(WindowPlace, comesBackAsItWasStored) {
    for (const WindowPlace &place :
         {WindowPlace{QRect(10, 20, 1080, 700), false}, WindowPlace{QRect(-1900, -40, 900, 600), true}})
        EXPECT_EQ(windowPlaceFromJson(toJson(place)), place);
}

TEST(WindowPlace, isStoredInOneLineOfJson) {
    EXPECT_EQ(windowPlaceFromJson(R"({"x":1,"y":2,"width":3,"height":4,"maximized":true})"),
              (WindowPlace{QRect(1, 2, 3, 4), true}));
    EXPECT_EQ(toJson({QRect(1, 2, 3, 4), false}).find('\n'), std::string::npos);
}

struct BadPlace {
    const char *json;
    const char *reason;
};

class BadPlaces : public testing::TestWithParam<BadPlace> {};

TEST_P(BadPlaces, areNone) {
    EXPECT_EQ(windowPlaceFromJson(GetParam().json), std::nullopt) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    all, BadPlaces,
    testing::Values(BadPlace{"", "nothing was stored"}, BadPlace{"{", "it was cut short"},
                    BadPlace{"[1,2,3,4]", "no object"}, BadPlace{"null", "no object"},
                    BadPlace{"\xff\xfe", "no UTF-8"},
                    BadPlace{R"({"x":1,"y":2,"width":3})", "the height is missing"},
                    BadPlace{R"({"y":2,"width":3,"height":4})", "x is missing"},
                    BadPlace{R"({"x":"1","y":2,"width":3,"height":4})", "a number in quotes"},
                    BadPlace{R"({"x":null,"y":2,"width":3,"height":4})", "null is no number"},
                    BadPlace{R"({"x":1,"y":2,"width":0,"height":4})", "no width"},
                    BadPlace{R"({"x":1,"y":2,"width":3,"height":-4})", "a height below nothing"},
                    BadPlace{R"({"x":1e300,"y":2,"width":3,"height":4})", "beyond every desktop"},
                    BadPlace{R"({"x":1,"y":-1e9,"width":3,"height":4})", "above every desktop"},
                    BadPlace{R"({"x":1,"y":2,"width":100001,"height":4})", "wider than every desktop"},
                    BadPlace{R"({"x":1,"y":2,"width":0.4,"height":4})", "less than a pixel"}));

TEST(WindowPlace, oddExtrasAreLeftOut) {
    EXPECT_EQ(windowPlaceFromJson(R"({"x":1.9,"y":2,"width":3,"height":4,"maximized":"yes","more":[]})"),
              (WindowPlace{QRect(1, 2, 3, 4), false}));
}

TEST(WindowFrame, isCentredOnTheMainScreenAtFirst) {
    const QRect frame = frameFor(std::nullopt, preferred, least, {laptop, besides});
    EXPECT_EQ(frame.size(), preferred);
    EXPECT_EQ(frame.center(), laptop.center());
}

TEST(WindowFrame, isAsItWasLeft) {
    const QRect frame(200, 100, 1000, 650);
    EXPECT_EQ(left(frame, {laptop}), frame);
    EXPECT_EQ(left(frame.translated(1500, 0), {laptop, besides}), frame.translated(1500, 0));
}

TEST(WindowFrame, mayHangOverAnEdgeWhileItsTitleIsInReach) {
    const QRect frame(1380, 600, 1000, 650);
    EXPECT_EQ(left(frame, {laptop}), frame);
}

struct LostFrame {
    QRect frame;
    const char *reason;
};

class LostFrames : public testing::TestWithParam<LostFrame> {};

TEST_P(LostFrames, comeBackToTheMiddle) {
    const QRect frame = left(GetParam().frame, {laptop});
    EXPECT_EQ(frame.center(), laptop.center()) << GetParam().reason;
    EXPECT_EQ(frame.size(), GetParam().frame.size());
}

INSTANTIATE_TEST_SUITE_P(all, LostFrames,
                         testing::Values(LostFrame{QRect(1500, 100, 1000, 650), "its screen has gone"},
                                         LostFrame{QRect(-960, 100, 1000, 650), "only a sliver is left"},
                                         LostFrame{QRect(1420, 100, 1000, 650), "a sliver at the right"},
                                         LostFrame{QRect(100, -60, 1000, 650), "its title is above"},
                                         LostFrame{QRect(100, 890, 1000, 650), "its title is below"},
                                         LostFrame{QRect(-90000, -90000, 1000, 650), "far away"}));

TEST(WindowFrame, isNeverTooSmall) {
    EXPECT_EQ(left(QRect(100, 100, 200, 100), {laptop}), QRect(QPoint(100, 100), least));
    EXPECT_EQ(left(QRect(100, 100, 1200, 100), {laptop}).size(), QSize(1200, 560));
}

TEST(WindowFrame, isNoLargerThanASmallScreen) {
    const QRect netbook(0, 0, 1024, 560);
    const QRect frame = frameFor(std::nullopt, preferred, least, {netbook});
    EXPECT_EQ(frame, netbook);
    const QRect tiny(0, 0, 640, 480);
    EXPECT_EQ(frameFor(std::nullopt, preferred, least, {tiny}), tiny);
    EXPECT_EQ(left(QRect(5000, 0, 2000, 1400), {netbook}), netbook);
}

TEST(WindowFrame, withoutAnyScreenIsWhatWasAskedFor) {
    EXPECT_EQ(frameFor(std::nullopt, preferred, least, {}).size(), preferred);
    EXPECT_EQ(left(QRect(7, 8, 900, 600), {}), QRect(7, 8, 900, 600));
}

} // namespace
} // namespace tarnvale
