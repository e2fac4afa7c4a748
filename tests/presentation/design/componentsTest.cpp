#include "presentation/design/QmlPage.h"

#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/shared/screenItems.h"

#include <QAccessible>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

void qml_register_types_Tarnvale_Gallery(); // NOLINT(readability-identifier-naming): made by the build

namespace tarnvale {
namespace {

QAccessibleInterface *accessible(QQuickItem *item) {
    return QAccessible::queryAccessibleInterface(item);
}

std::string countingPage(const std::string &part) {
    return "Item { id: root; width: 300; height: 200; property int times: 0\n" + part + "\n}";
}

TEST(Components, theWholeGalleryLoadsWithoutAWarning) {
    qml_register_types_Tarnvale_Gallery();
    for (const bool isDark : {false, true}) {
        Appearance::instance().setOverride(isDark, true);
        QmlPage page("import Tarnvale.Gallery\nGallery { still: true }");
        ASSERT_NE(page.root(), nullptr) << page.warnings();
        EXPECT_FALSE(page.window().grabWindow().isNull());
        EXPECT_EQ(page.warnings(), "");
    }
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
}

TEST(Components, everythingThatTakesTheFocusHasANameAndARole) {
    qml_register_types_Tarnvale_Gallery();
    QAccessible::setActive(true);
    QmlPage page("import Tarnvale.Gallery\nGallery { still: true }");
    ASSERT_NE(page.root(), nullptr) << page.warnings();
    int focusable = 0;
    for (QQuickItem *item : page.root()->findChildren<QQuickItem *>()) {
        if (!item->activeFocusOnTab() || !item->isVisible())
            continue;
        ++focusable;
        QAccessibleInterface *face = accessible(item);
        ASSERT_NE(face, nullptr);
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << item->metaObject()->className();
        EXPECT_NE(face->role(), QAccessible::NoRole) << face->text(QAccessible::Name).toStdString();
    }
    EXPECT_GT(focusable, 15);
}

TEST(Components, aButtonIsPressedByPointerAndKeyboardAndScreenReader) {
    QAccessible::setActive(true);
    QmlPage page(
        countingPage("IconButton { objectName: 'part'; title: 'Go'; systemImage: 'globe'; x: 20; y: 20; "
                     "onActivated: ++root.times }"));
    ASSERT_EQ(page.warnings(), "");
    QQuickItem *part = page.find("part");
    clickOn(page.window(), *part);
    EXPECT_EQ(page.root()->property("times"), 1);
    part->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&page.window(), Qt::Key_Space);
    QTest::keyClick(&page.window(), Qt::Key_Return);
    EXPECT_EQ(page.root()->property("times"), 3);
    QTest::keyClick(&page.window(), Qt::Key_A);
    EXPECT_EQ(page.root()->property("times"), 3);
    accessible(part)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(page.root()->property("times"), 4);
    EXPECT_EQ(accessible(part)->text(QAccessible::Name), QStringLiteral("Go"));
}

TEST(Components, aDisabledButtonDoesNothing) {
    QmlPage page(
        countingPage("IconButton { objectName: 'part'; title: 'Go'; systemImage: 'globe'; enabled: false; "
                     "onActivated: ++root.times }"));
    clickOn(page.window(), *page.find("part"));
    QMetaObject::invokeMethod(page.find("part"), "activate");
    EXPECT_EQ(page.root()->property("times"), 0);
}

TEST(Components, aKeyThatIsHeldPressesOnce) {
    QmlPage page(
        countingPage("Chip { objectName: 'part'; title: 'Web'; focus: true; onActivated: ++root.times }"));
    page.find("part")->forceActiveFocus();
    QTest::keyPress(&page.window(), Qt::Key_Space);
    QTest::keyPress(&page.window(), Qt::Key_Space);
    QTest::keyRelease(&page.window(), Qt::Key_Space);
    EXPECT_EQ(page.root()->property("times"), 1);
}

TEST(Components, anArmedButtonTellsItsState) {
    QAccessible::setActive(true);
    QmlPage page(
        countingPage("ArmedButton { objectName: 'part'; title: 'Stop Visible'; armedTitle: 'Stop 3?' }"));
    QQuickItem *part = page.find("part");
    EXPECT_EQ(accessible(part)->text(QAccessible::Name), QStringLiteral("Stop Visible"));
    part->setProperty("armed", true);
    EXPECT_EQ(accessible(part)->text(QAccessible::Name), QStringLiteral("Stop 3?"));
}

TEST(Components, aSearchIsTypedAndCleared) {
    QmlPage page("SearchField { id: root; width: 300; prompt: 'Search'; property int cleared_: 0; "
                 "property string last: ''; onCleared: ++cleared_; onEdited: text => last = text }");
    ASSERT_EQ(page.warnings(), "");
    auto *input = page.root()->property("input").value<QQuickItem *>();
    ASSERT_NE(input, nullptr);
    input->forceActiveFocus();
    QTest::keyClick(&page.window(), Qt::Key_V);
    EXPECT_EQ(page.root()->property("text"), QStringLiteral("v"));
    EXPECT_EQ(page.root()->property("last"), QStringLiteral("v"));
    const QPoint clear(300 - 8 - 11, static_cast<int>(page.root()->height() / 2));
    QTest::mouseClick(&page.window(), Qt::LeftButton, {}, clear);
    EXPECT_EQ(page.root()->property("text"), QString());
    EXPECT_EQ(page.root()->property("cleared_"), 1);
    EXPECT_TRUE(input->hasActiveFocus());
}

TEST(Components, aHealthDotIsRingedOnlyAboveEight) {
    QmlPage page("Row { HealthDot { objectName: 'large'; health: 'responding'; size: 9 }\n"
                 "HealthDot { objectName: 'small'; health: 'unknown'; size: 8 } }");
    EXPECT_TRUE(page.find("large")->property("isRinged").toBool());
    EXPECT_FALSE(page.find("small")->property("isRinged").toBool());
}

TEST(Components, aHealthDotHasTheColourOfItsHealth) {
    QmlPage page("HealthDot { health: 'responding' }");
    for (const auto &[health, color] : {std::pair{"responding", "green"}, std::pair{"serverError", "red"},
                                        std::pair{"noResponse", "orange"}, std::pair{"unknown", "gray"},
                                        std::pair{"of the future", "gray"}}) {
        page.root()->setProperty("health", QLatin1String(health));
        EXPECT_EQ(page.root()->property("color").value<QColor>(), page.theme(color).value<QColor>())
            << health;
    }
}

TEST(Components, aPulseStandsStillWithoutMotion) {
    Appearance::instance().setOverride(std::nullopt, true);
    QmlPage page("PulseRing { width: 8; height: 8 }");
    EXPECT_FALSE(page.root()->property("runs").toBool());
    EXPECT_EQ(page.root()->opacity(), 0);
    Appearance::instance().setOverride(std::nullopt, false);
    EXPECT_TRUE(page.root()->property("runs").toBool());
    page.root()->setVisible(false);
    EXPECT_FALSE(page.root()->property("runs").toBool());
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
}

TEST(Components, aBannerIsDismissed) {
    QmlPage page(
        "Banner { id: root; width: 300; text: '<b>bold</b>'; property int times: 0; onDismissed: ++times }");
    const QPoint button(300 - 6 - 11, static_cast<int>(page.root()->height() / 2));
    QTest::mouseClick(&page.window(), Qt::LeftButton, {}, button);
    EXPECT_EQ(page.root()->property("times"), 1);
    EXPECT_EQ(page.warnings(), "");
}

TEST(Components, aTileWithoutItsApplicationShowsItsSymbol) {
    QmlPage page("IconTile { appIcon: 'image://icon/no-such-application'; size: 32 }");
    EXPECT_FALSE(page.root()->property("hasAppIcon").toBool());
    EXPECT_EQ(page.warnings(), "");
}

TEST(Components, aScrollBarShowsOnlyWhatDoesNotFit) {
    QmlPage page(
        "Item { width: 100; height: 100\nListView { id: list; objectName: 'list'; anchors.fill: parent; "
        "model: 3; delegate: Item { height: 20; width: 20 } }\n"
        "ListScroller { objectName: 'bar'; target: list } }");
    EXPECT_FALSE(page.find("bar")->isVisible());
    page.find("list")->setProperty("model", 50);
    page.window().grabWindow();
    EXPECT_TRUE(page.find("bar")->isVisible());
    QMetaObject::invokeMethod(page.find("bar"), "moveTo", Q_ARG(double, 1.0));
    EXPECT_EQ(page.find("list")->property("contentY"), 900);
    EXPECT_EQ(page.warnings(), "");
}

TEST(Components, aCountRollsWithoutAWarning) {
    QmlPage page("CountPill { count: 3 }");
    page.root()->setProperty("count", 12);
    page.root()->setProperty("count", 1);
    EXPECT_EQ(page.warnings(), "");
}

} // namespace
} // namespace tarnvale
