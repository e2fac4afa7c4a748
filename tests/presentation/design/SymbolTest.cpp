#include "presentation/design/QmlPage.h"
#include "presentation/design/symbols.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

/// A symbol of the text size 20, so of 24 units a side, at 8, 8 on white.
std::string onWhite(const std::string &properties) {
    const std::string place = properties.find("x: ") == std::string::npos ? "x: 8; y: 8; " : "";
    return "Rectangle { width: 40; height: 40; color: 'white'\nSymbol { objectName: 'symbol'; size: 20; " +
           place + properties + " } }";
}

QImage painted(QmlPage &page) {
    EXPECT_EQ(page.warnings(), "");
    return page.window().grabWindow().convertToFormat(QImage::Format_RGB32);
}

QImage pictureOf(const std::string &properties) {
    QmlPage page(onWhite(properties));
    return painted(page);
}

double sideOf(const std::string &properties) {
    QmlPage page(onWhite(properties));
    return page.find("symbol")->width();
}

TEST(Symbol, isTheDrawingOfItsNameInItsColour) {
    QImage expected(40, 40, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(8, 8, renderSymbol(u"bell.fill", 24, {.color = QColor(200, 0, 0)}));
    EXPECT_EQ(pictureOf("name: 'bell.fill'; color: '#c80000'"), expected);
}

TEST(Symbol, anUnknownNameStaysEmpty) {
    QImage empty(40, 40, QImage::Format_RGB32);
    empty.fill(Qt::white);
    EXPECT_EQ(pictureOf("name: 'no.such.symbol'"), empty);
    EXPECT_EQ(pictureOf("name: ''"), empty);
}

TEST(Symbol, isALittleLargerThanItsTextAndALogoIsNot) {
    EXPECT_EQ(sideOf("name: 'bell'"), 24);
    EXPECT_EQ(sideOf("name: 'logo-docker'"), 20);
}

TEST(Symbol, inALargerItemItStandsInTheMiddle) {
    const std::string black = "name: 'stop.fill'; color: 'black'; ";
    EXPECT_EQ(pictureOf(black + "x: 0; y: 0; width: 40; height: 40"), pictureOf(black + "x: 8; y: 8"));
}

TEST(Symbol, aChangeIsPainted) {
    QmlPage page(onWhite("name: 'bell'; color: 'black'"));
    QObject *symbol = page.find("symbol");
    EXPECT_EQ(painted(page), pictureOf("name: 'bell'; color: 'black'"));
    symbol->setProperty("color", QColor(Qt::red));
    EXPECT_EQ(painted(page), pictureOf("name: 'bell'; color: 'red'"));
    symbol->setProperty("name", QStringLiteral("clock"));
    EXPECT_EQ(painted(page), pictureOf("name: 'clock'; color: 'red'"));
    symbol->setProperty("size", 15);
    EXPECT_EQ(symbol->property("width").toInt(), 18);
}

} // namespace
} // namespace tarnvale
