// What lies above the pages of the main window: palette, error, welcome, the sheet of a new stack.

#include "presentation/window/WindowScene.h"

#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

TEST(WindowSheets, ctrlKOpensThePaletteAndEscGivesTheKeyboardBack) {
    WindowScene scene("few");
    scene.click(sidebarRow(scene, "allPorts"));
    scene.click(scene.find("WindowRowView"));
    QQuickItem *const before = focused(scene);
    scene.press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(scene.view().isPaletteShown());
    const QQuickItem *palette = scene.find("CommandPalette");
    ASSERT_NE(palette, nullptr);
    EXPECT_TRUE(isWithin(focused(scene), palette));
    EXPECT_EQ(frameOf(*palette).top(), 70);
    scene.type(QStringLiteral("shop"));
    EXPECT_EQ(scene.controller->palette().query(), QStringLiteral("shop"));
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(scene.view().isPaletteShown());
    EXPECT_EQ(scene.find("CommandPalette"), nullptr);
    EXPECT_EQ(focused(scene), before);
    EXPECT_EQ(scene.view().query(), QString());
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.ports().selectedIndex(), 1) << "the keys are the list's again";
    EXPECT_EQ(scene.warnings(), "");
}

TEST(WindowSheets, ctrlKOpensThePaletteFromTheSearchFieldAndClosesItAgain) {
    WindowScene scene("few");
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(scene.view().isPaletteShown());
    scene.press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_FALSE(scene.view().isPaletteShown());
    EXPECT_EQ(focused(scene), searchInput(scene));
}

TEST(WindowSheets, aClickBesideThePaletteClosesIt) {
    WindowScene scene("few");
    scene.press(Qt::Key_K, Qt::ControlModifier);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {20, scene.window().height() - 20});
    scene.draw();
    EXPECT_FALSE(scene.view().isPaletteShown());
}

TEST(WindowSheets, nothingBehindThePaletteIsReached) {
    WindowScene scene("few");
    scene.press(Qt::Key_K, Qt::ControlModifier);
    const QRectF row = frameOf(*sidebarRow(scene, "activity"));
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {},
                      QPointF(row.left() + 20, row.center().y()).toPoint());
    scene.draw();
    EXPECT_EQ(scene.view().page(), SidebarItem::overview);
    EXPECT_FALSE(scene.view().isPaletteShown()) << "it was a click beside it";
    scene.press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(scene.view().isPaletteShown());
    for (int tabs = 0; tabs < 5; ++tabs) {
        scene.press(Qt::Key_Tab);
        EXPECT_TRUE(isWithin(focused(scene), scene.find("CommandPalette"))) << tabs;
    }
}

TEST(WindowSheets, anErrorIsAToastThatIsDismissed) {
    WindowScene scene("few");
    EXPECT_EQ(scene.find("ErrorToast"), nullptr);
    scene.store->setError(QStringLiteral("<b>Something</b> went wrong"));
    scene.draw();
    const QQuickItem *toast = scene.find("ErrorToast");
    ASSERT_NE(toast, nullptr);
    EXPECT_EQ(frameOf(*toast).bottom(), scene.window().height() - 22);
    EXPECT_TRUE(scene.says(QStringLiteral("<b>Something</b> went wrong")));
    QQuickItem *close = scene.find("IconButton", QStringLiteral("Dismiss"));
    EXPECT_EQ(nameOf(close), QStringLiteral("Dismiss"));
    scene.click(close);
    EXPECT_EQ(scene.store->error(), std::nullopt);
    EXPECT_EQ(scene.find("ErrorToast"), nullptr);
}

TEST(WindowSheets, aLongErrorStaysWithinTheWindow) {
    WindowScene scene("few");
    scene.resize(800, 560);
    scene.store->setError(QString(2000, QLatin1Char('x')));
    scene.draw();
    const QRectF frame = frameOf(*scene.find("ErrorToast"));
    EXPECT_GE(frame.left(), 0);
    EXPECT_LE(frame.right(), 800);
    EXPECT_GT(frame.top(), 300);
}

TEST(WindowSheets, theWelcomeIsShownOnceHoweverItIsClosed) {
    enum class By { button, escape };
    for (const By by : {By::button, By::escape}) {
        WindowScene scene("few",
                          [](DemoWorld &world) { world.platform.settings.values.erase("hasSeenWelcome"); });
        ASSERT_NE(scene.find("WelcomeView"), nullptr);
        EXPECT_TRUE(isWithin(focused(scene), scene.find("WelcomeView")));
        keepPicture(scene, "welcome");
        EXPECT_EQ(scene.world.platform.settings.flag("hasSeenWelcome"), std::nullopt);
        scene.press(by == By::escape ? Qt::Key_Escape : Qt::Key_Return);
        EXPECT_EQ(scene.find("WelcomeView"), nullptr);
        EXPECT_EQ(scene.world.platform.settings.flag("hasSeenWelcome"), true);
        EXPECT_EQ(scene.warnings(), "");
    }
}

TEST(WindowSheets, behindTheWelcomeNothingIsReached) {
    WindowScene scene("few",
                      [](DemoWorld &world) { world.platform.settings.values.erase("hasSeenWelcome"); });
    scene.press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_FALSE(scene.view().isPaletteShown());
    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(isWithin(focused(scene), scene.find("WelcomeView")));
}

TEST(WindowSheets, aNewStackIsMadeInASheetOverTheWindow) {
    WindowScene scene("full");
    scene.click(sidebarRow(scene, "stacks"));
    scene.controller->stacks().newStack()->open("/home/me/shop");
    scene.draw();
    ASSERT_NE(scene.find("NewStackSheet"), nullptr);
    EXPECT_TRUE(isWithin(focused(scene), scene.find("NewStackSheet")));
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(scene.find("NewStackSheet"), nullptr);
    EXPECT_EQ(scene.warnings(), "");
}

} // namespace
} // namespace tarnvale
