#include "presentation/tray/panelPlacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const QRect wholeScreen(0, 0, 1920, 1080);
constexpr QSize size(400, 300);

QRect inside(int left, int top, int right, int bottom) {
    return wholeScreen.adjusted(left, top, -right, -bottom);
}

ScreenFrame screen(const QRect &available, const QRect &geometry = wholeScreen) {
    return {geometry, available, 1, geometry.topLeft()};
}

QRect placed(const QRect &icon, TrayEdge edge, const QRect &visible, const QSize &content = size) {
    return placePanel({icon, edge, visible}, content).frame;
}

struct Case {
    const char *what;
    QRect icon;
    TrayEdge edge;
    QRect visible;
    QSize content;
    QRect expected;
};

const QRect underBar = inside(0, 30, 0, 0);
const QRect overBar = inside(0, 0, 0, 40);

const std::vector<Case> cases{
    {"in the middle of the icon, below it",
     {1000, 4, 22, 26},
     TrayEdge::top,
     underBar,
     size,
     {811, 36, 400, 300}},
    {"an odd difference", {1000, 4, 23, 26}, TrayEdge::top, underBar, size, {812, 36, 400, 300}},
    {"near the right edge it stays 8 inside",
     {1890, 4, 22, 26},
     TrayEdge::top,
     underBar,
     size,
     {1512, 36, 400, 300}},
    {"near the left edge it stays 8 inside",
     {2, 4, 22, 26},
     TrayEdge::top,
     underBar,
     size,
     {8, 36, 400, 300}},
    {"just inside on the right", {1701, 4, 22, 26}, TrayEdge::top, underBar, size, {1512, 36, 400, 300}},
    {"in a narrow frame the right limit wins",
     {100, 4, 22, 26},
     TrayEdge::top,
     {0, 30, 300, 900},
     size,
     {-108, 36, 400, 300}},
    {"in a frame that fits but for the margins too",
     {100, 4, 22, 26},
     TrayEdge::top,
     {0, 30, 410, 900},
     size,
     {2, 36, 400, 300}},
    {"never under a bar that the icon is smaller than",
     {1000, 4, 22, 16},
     TrayEdge::top,
     underBar,
     size,
     {811, 30, 400, 300}},
    {"on a second screen",
     {2900, 4, 22, 26},
     TrayEdge::top,
     {1920, 30, 1000, 900},
     size,
     {2512, 36, 400, 300}},
    {"above a bottom bar", {1000, 1044, 22, 32}, TrayEdge::bottom, overBar, size, {811, 738, 400, 300}},
    {"above a bottom bar in the corner",
     {1890, 1041, 22, 32},
     TrayEdge::bottom,
     overBar,
     size,
     {1512, 735, 400, 300}},
    {"beside a left bar, upper half",
     {4, 200, 32, 32},
     TrayEdge::left,
     inside(40, 0, 0, 0),
     size,
     {42, 200, 400, 300}},
    {"beside a left bar, lower half",
     {4, 700, 32, 32},
     TrayEdge::left,
     inside(40, 0, 0, 0),
     size,
     {42, 432, 400, 300}},
    {"beside a left bar at its end",
     {4, 1060, 32, 20},
     TrayEdge::left,
     inside(40, 0, 0, 0),
     size,
     {42, 772, 400, 300}},
    {"beside a right bar",
     {1884, 200, 32, 32},
     TrayEdge::right,
     inside(0, 0, 40, 0),
     size,
     {1478, 200, 400, 300}},
    {"beside a right bar at its start",
     {1884, 0, 32, 20},
     TrayEdge::right,
     inside(0, 0, 40, 0),
     size,
     {1478, 8, 400, 300}},
    {"too tall beside a bar, upper half",
     {4, 200, 32, 32},
     TrayEdge::left,
     inside(40, 0, 0, 0),
     {400, 2000},
     {42, 8, 400, 2000}},
};

TEST(PanelPlacementTest, thePanelHangsFromTheIcon) {
    for (const Case &row : cases)
        EXPECT_EQ(placed(row.icon, row.edge, row.visible, row.content), row.expected) << row.what;
}

TEST(PanelPlacementTest, theEdgeAtTheIconStaysWhileTheContentGrowsAndShrinks) {
    const PanelPlacement top = placePanel({{1000, 4, 22, 26}, TrayEdge::top, underBar}, size);
    for (const QSize &other : {QSize(400, 120), QSize(400, 700), QSize(420, 300), size})
        EXPECT_EQ(resizePanel(top, other).frame, QRect(QPoint(811, 36), other));
    const PanelPlacement bottom = placePanel({{1000, 1044, 22, 32}, TrayEdge::bottom, overBar}, size);
    for (const QSize &other : {QSize(400, 120), QSize(400, 700), QSize(420, 300), size})
        EXPECT_EQ(resizePanel(bottom, other).frame, QRect(QPoint(811, 1038 - other.height()), other));
    EXPECT_EQ(resizePanel(resizePanel(bottom, {1, 1}), size), bottom);
}

TEST(PanelPlacementTest, theRoomEndsInsideTheVisibleFrame) {
    EXPECT_EQ(roomFor({{0, 36, 400, 300}, false}, underBar), 1080 - 8 - 36);
    EXPECT_EQ(roomFor({{0, 738, 400, 300}, true}, overBar), 1038 - 8);
}

TEST(AnchorTest, theIconItselfIsBest) {
    const auto anchor =
        anchorFor({.icon = QRect(1800, 2, 22, 26), .place = QPoint(5, 500), .pointer = QPoint(9, 9)},
                  {screen(underBar)});
    EXPECT_EQ(anchor, (PanelAnchor{{1800, 2, 22, 26}, TrayEdge::top, underBar}));
}

TEST(AnchorTest, anIconOnNoScreenIsNotBelieved) {
    const auto anchor =
        anchorFor({.icon = QRect(-500, -500, 22, 22), .place = QPoint(1800, 12)}, {screen(underBar)});
    ASSERT_TRUE(anchor);
    EXPECT_EQ(anchor->rect.x(), 1800);
}

struct PointCase {
    const char *what;
    QPoint place;
    QRect available;
    TrayEdge edge;
    QRect rect;
};

const std::vector<PointCase> pointCases{
    {"in a top bar", {1800, 12}, underBar, TrayEdge::top, {1800, 12, 1, 18}},
    {"in a top bar's corner", {1919, 0}, underBar, TrayEdge::top, {1919, 0, 1, 30}},
    {"in a bottom bar", {1800, 1060}, overBar, TrayEdge::bottom, {1800, 1040, 1, 21}},
    {"in a left bar near its end", {10, 1070}, inside(40, 0, 0, 0), TrayEdge::left, {10, 1070, 30, 1}},
    {"in a right bar near its start", {1900, 3}, inside(0, 0, 40, 0), TrayEdge::right, {1880, 3, 21, 1}},
    {"on a bar that floats, at the top", {1910, 12}, wholeScreen, TrayEdge::top, {1910, 12, 1, 1}},
    {"on a bar that floats, at the bottom", {5, 1070}, wholeScreen, TrayEdge::bottom, {5, 1070, 1, 1}},
    {"on a bar that floats, at the left", {5, 500}, wholeScreen, TrayEdge::left, {5, 500, 1, 1}},
    {"on a bar that floats, at the right", {1915, 500}, wholeScreen, TrayEdge::right, {1915, 500, 1, 1}},
    {"the edge of a bar", {900, 30}, underBar, TrayEdge::top, {900, 30, 1, 1}},
};

TEST(AnchorTest, aPointStandsForTheStripThatItIsIn) {
    for (const PointCase &row : pointCases) {
        const auto anchor = anchorFor({.place = row.place}, {screen(row.available)});
        EXPECT_EQ(anchor, (PanelAnchor{row.rect, row.edge, row.available})) << row.what;
    }
}

TEST(AnchorTest, aPlaceInDevicePixelsIsScaled) {
    const std::vector screens{ScreenFrame{{0, 0, 1920, 1080}, {0, 32, 1920, 1048}, 2, {0, 0}},
                              ScreenFrame{{3840, 0, 1920, 1080}, {3840, 28, 1920, 1052}, 1, {3840, 0}}};
    const auto first = anchorFor({.place = QPoint(3800, 20)}, screens);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->rect, QRect(1900, 10, 1, 22));
    EXPECT_EQ(placePanel(*first, size).frame, QRect(1512, 38, 400, 300));
    const auto second = anchorFor({.place = QPoint(4000, 20)}, screens);
    ASSERT_TRUE(second);
    EXPECT_EQ(placePanel(*second, size).frame, QRect(3848, 34, 400, 300));
}

TEST(AnchorTest, withoutAPlaceThePointerIsTheNextBest) {
    const auto anchor = anchorFor({.pointer = QPoint(1800, 12)}, {screen(underBar)});
    EXPECT_EQ(anchor, (PanelAnchor{{1800, 12, 1, 18}, TrayEdge::top, underBar}));
    EXPECT_EQ(anchorFor({.place = QPoint(9000, 9000), .pointer = QPoint(1800, 12)}, {screen(underBar)}),
              anchor);
}

TEST(AnchorTest, whenNothingIsKnownItIsTheTopRightCorner) {
    const std::vector screens{screen(underBar), screen({1920, 0, 1280, 1000}, {1920, 0, 1280, 1024})};
    const auto frameFor = [&](const AnchorHints &hints) {
        return placePanel(*anchorFor(hints, screens), size).frame;
    };
    EXPECT_EQ(frameFor({}), QRect(1512, 38, 400, 300));
    EXPECT_EQ(frameFor({.attention = QPoint(2000, 700)}), QRect(2792, 8, 400, 300));
    EXPECT_EQ(frameFor({.attention = QPoint(-70, 700)}), QRect(1512, 38, 400, 300));
    EXPECT_EQ(frameFor({.pointer = QPoint(-70, 700), .attention = QPoint(2000, 700)}),
              QRect(2792, 8, 400, 300));
}

TEST(AnchorTest, withoutScreensThereIsNone) {
    EXPECT_EQ(anchorFor({.icon = QRect(0, 0, 1, 1), .place = QPoint(0, 0)}, {}), std::nullopt);
}

} // namespace
} // namespace tarnvale
