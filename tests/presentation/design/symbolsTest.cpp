#include "presentation/design/symbols.h"

#include <QColor>
#include <QFile>
#include <QSet>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

QString nameOf(std::string_view name) {
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

/// How many of its pixels are drawn at least half.
int drawnPixels(const QImage &image) {
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            drawn += qAlpha(image.pixel(x, y)) > 127 ? 1 : 0;
    }
    return drawn;
}

TEST(Symbols, eachHasADrawingThatIsNotEmpty) {
    constexpr int side = 32;
    for (const std::string_view name : symbolNames()) {
        EXPECT_TRUE(QFile::exists(symbolFile(nameOf(name)))) << name;
        const int drawn = drawnPixels(renderSymbol(nameOf(name), side, {.color = QColor(Qt::black)}));
        EXPECT_GT(drawn, 10) << name;
        EXPECT_LT(drawn, side * side) << name;
    }
}

TEST(Symbols, noNameIsThereTwice) {
    QSet<QString> names;
    for (const std::string_view name : symbolNames())
        names.insert(nameOf(name));
    EXPECT_EQ(static_cast<std::size_t>(names.size()), symbolNames().size());
}

TEST(Symbols, everyNameThatTheScreensUseIsThere) {
    const std::vector<const char *> used{"terminal.fill",
                                         "gearshape.fill",
                                         "server.rack",
                                         "cylinder.split.1x2.fill",
                                         "bolt.horizontal.fill",
                                         "globe",
                                         "iphone",
                                         "cup.and.saucer.fill",
                                         "shippingbox.fill",
                                         "macwindow",
                                         "magnifyingglass",
                                         "xmark.circle.fill",
                                         "moon.zzz",
                                         "safari",
                                         "doc.on.doc",
                                         "checkmark",
                                         "ellipsis",
                                         "xmark",
                                         "bell.fill",
                                         "wifi",
                                         "square.stack.3d.up.fill",
                                         "square.stack.3d.up",
                                         "play.fill",
                                         "stop.fill",
                                         "trash",
                                         "chevron.right",
                                         "exclamationmark.triangle.fill",
                                         "gearshape",
                                         "arrow.clockwise",
                                         "sidebar.right",
                                         "sidebar.left",
                                         "xmark.octagon",
                                         "network",
                                         "keyboard",
                                         "house",
                                         "clock",
                                         "bell",
                                         "arrow.up.right",
                                         "terminal",
                                         "puzzlepiece",
                                         "power",
                                         "photo",
                                         "pause.fill",
                                         "lock.fill",
                                         "link",
                                         "info.circle",
                                         "gearshape.2",
                                         "folder.fill",
                                         "folder.badge.plus",
                                         "folder",
                                         "ellipsis.circle",
                                         "dot.radiowaves.left.and.right",
                                         "cylinder",
                                         "command",
                                         "clock.arrow.circlepath",
                                         "bell.badge",
                                         "arrow.up.forward.app",
                                         "logo-openai",
                                         "logo-claude",
                                         "logo-docker"};
    for (const char *name : used)
        EXPECT_FALSE(symbolFile(QString::fromLatin1(name)).isEmpty()) << name;
}

TEST(Symbols, anUnknownNameIsNoPicture) {
    EXPECT_TRUE(symbolFile(u"no.such.symbol").isEmpty());
    EXPECT_TRUE(symbolFile(u"").isEmpty());
    EXPECT_TRUE(symbolFile(u"../logos/docker").isEmpty());
    EXPECT_TRUE(renderSymbol(u"no.such.symbol", 16, {.color = QColor(Qt::black)}).isNull());
    EXPECT_TRUE(renderSymbol(u"bell", 0, {.color = QColor(Qt::black)}).isNull());
    EXPECT_TRUE(renderSymbol(u"bell", -5, {.color = QColor(Qt::black)}).isNull());
}

TEST(Symbols, aPictureIsInOneColourWithItsOpacity) {
    const QColor color(200, 100, 50, 128);
    const QImage image = renderSymbol(u"stop.fill", 24, {.color = color});
    const QColor middle = image.pixelColor(12, 12);
    EXPECT_NEAR(middle.red(), 200, 2);
    EXPECT_NEAR(middle.green(), 100, 2);
    EXPECT_NEAR(middle.blue(), 50, 2);
    EXPECT_EQ(middle.alpha(), 128);
}

TEST(Symbols, aFilledOneHasMoreInkThanItsOutline) {
    const auto ink = [](QStringView name) {
        return drawnPixels(renderSymbol(name, 48, {.color = QColor(Qt::black)}));
    };
    EXPECT_GT(ink(u"bell.fill"), 2 * ink(u"bell"));
    EXPECT_GT(ink(u"folder.fill"), 2 * ink(u"folder"));
    EXPECT_GT(ink(u"gearshape.fill"), ink(u"gearshape"));
    EXPECT_GT(ink(u"square.stack.3d.up.fill"), ink(u"square.stack.3d.up"));
}

TEST(Symbols, theSignIsCutOutOfItsGround) {
    const auto alpha = [](QStringView name, int x, int y) {
        return qAlpha(renderSymbol(name, 96, {.color = QColor(Qt::black)}).pixel(x, y));
    };
    EXPECT_EQ(alpha(u"xmark.circle.fill", 48, 48), 0) << "the crossing";
    EXPECT_EQ(alpha(u"xmark.circle.fill", 48, 20), 255) << "above it";
    EXPECT_EQ(alpha(u"gearshape.fill", 48, 48), 0) << "the hole";
    EXPECT_EQ(alpha(u"exclamationmark.triangle.fill", 48, 42), 0) << "the mark";
    EXPECT_EQ(alpha(u"terminal.fill", 52, 52), 0) << "the line";
}

TEST(Symbols, linesAreAsWideAsAskedFor) {
    const auto ink = [](double stroke) {
        return drawnPixels(renderSymbol(u"xmark", 96, {.color = QColor(Qt::black), .stroke = stroke}));
    };
    EXPECT_GT(ink(3), ink(2));
    EXPECT_GT(ink(2), ink(1));
}

} // namespace
} // namespace tarnvale
