// The buttons, chips and badges of the real panel: what they say, and what a press on them does.

#include "presentation/panel/PanelScene.h"

#include <QKeyEvent>
#include <QTest>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

QString textOf(const QQuickItem *item, const char *property) {
    return item == nullptr ? QStringLiteral("(none)") : item->property(property).toString();
}

/// The labels of the badges of the row of that port.
QStringList badgesOf(const PanelScene &scene, const QString &port) {
    QStringList labels;
    for (const QQuickItem *badge : scene.findAll("Badge"))
        for (const QQuickItem *item = badge; item != nullptr; item = item->parentItem())
            if (item->property("rowId").toString().endsWith(QLatin1Char(':') + port))
                labels += badge->property("label").toString();
    return labels;
}

TEST(PanelControls, stopVisibleCountsWhatItWouldStop) {
    PanelScene scene("few");
    scene.open();
    const QQuickItem *button = scene.find("ArmedButton");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(textOf(button, "shownTitle"), QStringLiteral("Stop Visible"));
    EXPECT_EQ(textOf(button, "tip"),
              QStringLiteral(
                  "Stop every dev process shown (services, containers and system processes are skipped)"));
    scene.click(button);
    EXPECT_EQ(textOf(button, "shownTitle"), QStringLiteral("Stop 3?"));
    EXPECT_EQ(textOf(button, "tip"), QStringLiteral("Click again to stop 3 processes"));
    scene.menuBar->list().setQuery(QStringLiteral("5173"));
    EXPECT_EQ(textOf(button, "tip"), QStringLiteral("Click again to stop 1 process"));
    scene.pass(4100ms);
    EXPECT_EQ(textOf(button, "shownTitle"), QStringLiteral("Stop Visible"));
}

TEST(PanelControls, aCopyIsConfirmedOnItsButton) {
    PanelScene scene("few");
    scene.open();
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Down);
    scene.draw();
    const QQuickItem *copy = scene.find("IconButton", QStringLiteral("Copy URL"));
    ASSERT_NE(copy, nullptr);
    scene.click(copy);
    EXPECT_EQ(scene.world.platform.clipboard.texts, std::vector<std::string>{"http://localhost:5173"});
    EXPECT_EQ(textOf(copy, "title"), QStringLiteral("Copied"));
    scene.pass(1300ms);
    EXPECT_EQ(textOf(copy, "title"), QStringLiteral("Copy URL"));
}

TEST(PanelControls, aRowThatIsNoWebsiteHasNothingToOpen) {
    PanelScene scene("few");
    scene.open();
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_Up);
    scene.draw();
    EXPECT_EQ(scene.find("IconButton", QStringLiteral("Open in Browser")), nullptr);
    EXPECT_NE(scene.find("IconButton", QStringLiteral("Copy Address (localhost:5432)")), nullptr);
    EXPECT_NE(scene.find("IconButton", QStringLiteral("More actions")), nullptr);
}

TEST(PanelControls, aRowIsOpenedWithItsButton) {
    PanelScene scene("few");
    scene.open();
    scene.hover(middleOf(*scene.find("PortRowView")));
    scene.click(scene.find("IconButton", QStringLiteral("Open in Browser")));
    EXPECT_EQ(scene.world.platform.desktop.opened, std::vector<std::string>{"http://localhost:5173"});
}

TEST(PanelControls, badgesSayWhatIsSpecial) {
    PanelScene scene("full");
    scene.open();
    EXPECT_EQ(badgesOf(scene, QStringLiteral("5173")), QStringList{QStringLiteral("Watched")});
    EXPECT_EQ(badgesOf(scene, QStringLiteral("8000")), QStringList{QStringLiteral("Exposed to network")});
    EXPECT_EQ(badgesOf(scene, QStringLiteral("8080")), QStringList());
}

TEST(PanelControls, theHealthDotNeedsAHealth) {
    PanelScene scene("few");
    scene.open();
    const auto dots = scene.findAll("HealthDot");
    ASSERT_EQ(dots.size(), 2u) << "of the two websites";
    EXPECT_EQ(textOf(dots[0], "health"), QStringLiteral("responding"));
    EXPECT_EQ(textOf(dots[1], "health"), QStringLiteral("serverError"));
}

TEST(PanelControls, theSearchCountsWhatItFinds) {
    PanelScene scene("few");
    scene.open();
    const QQuickItem *field = scene.find("SearchField");
    EXPECT_EQ(textOf(field, "countTip"), QStringLiteral("3 listening"));
    QTest::keyClick(&scene.menuBar->panel(), Qt::Key_8);
    scene.draw();
    EXPECT_EQ(textOf(field, "countTip"), QStringLiteral("1 listening"));
    scene.click(scene.find("IconButton", QStringLiteral("Clear search")));
    EXPECT_EQ(scene.menuBar->list().query(), QString());
    EXPECT_EQ(textOf(field, "countTip"), QStringLiteral("3 listening"));
}

TEST(PanelControls, aStackIsStartedAndDeletedAtOneClick) {
    PanelScene scene("full");
    scene.open();
    scene.click(scene.find("IconButton", QStringLiteral("Start docs")));
    scene.pass(2s);
    EXPECT_EQ(scene.world.platform.launcher.commands(),
              std::vector<std::string>{"python3 -m http.server 8000"});
    scene.click(scene.find("IconButton", QStringLiteral("Delete docs")));
    EXPECT_EQ(scene.store->stacks().size(), 1u);
    EXPECT_EQ(scene.findAll("StackRowView").size(), 1u);
}

TEST(PanelControls, theHistoryIsClearedAtOneClick) {
    PanelScene scene("full");
    scene.open();
    scene.menuBar->list().setShowRecent(true);
    scene.draw();
    scene.click(scene.find("LinkButton", QStringLiteral("Clear")));
    EXPECT_TRUE(scene.store->events().empty());
    EXPECT_EQ(scene.find("RecentSection"), nullptr);
}

TEST(PanelControls, theChipRecordsAShortcut) {
    PanelScene scene("few");
    scene.open();
    const QQuickItem *chip = scene.find("HotKeyChip");
    ASSERT_NE(chip, nullptr);
    EXPECT_EQ(textOf(chip, "title"), QStringLiteral("Open with Alt+Super+P"));
    scene.click(chip);
    EXPECT_EQ(textOf(chip, "title"), QStringLiteral("Press a shortcut…"));
    constexpr std::uint32_t positionOfK = 45;
    constexpr std::uint32_t keysymOfK = 0x6b;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier, positionOfK,
                    keysymOfK, 0);
    QCoreApplication::sendEvent(&scene.menuBar->panel(), &press);
    settle();
    EXPECT_EQ(textOf(chip, "title"), QStringLiteral("Open with Ctrl+Shift+K"));
    EXPECT_EQ(scene.menuBar->list().query(), QString());
    EXPECT_TRUE(scene.menuBar->isOpen());
}

TEST(PanelControls, escEndsARecordingAndNotThePanel) {
    PanelScene scene("few");
    scene.open();
    const QQuickItem *chip = scene.find("HotKeyChip");
    scene.click(chip);
    constexpr std::uint32_t positionOfEsc = 9;
    constexpr std::uint32_t keysymOfEsc = 0xff1b;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, {}, positionOfEsc, keysymOfEsc, 0);
    QCoreApplication::sendEvent(&scene.menuBar->panel(), &press);
    settle();
    EXPECT_FALSE(chip->property("isRecording").toBool());
    EXPECT_TRUE(scene.menuBar->isOpen());
}

TEST(PanelControls, aHeldLetterDoesNotStopAServer) {
    PanelScene scene("few");
    scene.open();
    QQuickWindow &window = scene.menuBar->panel();
    QTest::keyClick(&window, Qt::Key_Down);
    QTest::keyPress(&window, Qt::Key_K);
    for (int times = 0; times < 5; ++times) {
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_K, Qt::NoModifier, QStringLiteral("k"), true);
        QCoreApplication::sendEvent(&window, &repeat);
    }
    QTest::keyRelease(&window, Qt::Key_K);
    scene.pass(1s);
    EXPECT_TRUE(scene.world.platform.processes.sent.empty());
    EXPECT_NE(scene.menuBar->list().armedKill(), QString());
    EXPECT_EQ(scene.menuBar->list().query(), QString());
}

} // namespace
} // namespace tarnvale
