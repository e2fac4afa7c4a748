#include "presentation/design/popUpMenu.h"

#include "presentation/design/QmlPage.h"
#include "presentation/design/ToolTips.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

/// Carries out what waits, deletions too.
void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class PopUpMenu : public testing::Test {
protected:
    QmlPage page{"Item { width: 100; height: 100 }"};
    int chosen = 0;
};

TEST_F(PopUpMenu, noEntriesAreNoMenu) {
    EXPECT_EQ(popUpMenu({}, QPoint(), &page.window()), nullptr);
    EXPECT_EQ(popUpMenu({menuAction(QStringLiteral("A"), {})}, nullptr), nullptr);
}

TEST_F(PopUpMenu, entriesAreShownAsTheyStand) {
    const QPointer<QMenu> menu =
        popUpMenu({menuAction(QStringLiteral("Save & \"load\" <b>"), {}),
                   menuDivider(),
                   {.title = QStringLiteral("Watch"), .isChecked = true},
                   {.title = QStringLiteral("Off"), .isEnabled = false},
                   {.title = QStringLiteral("Quit"), .shortcut = QStringLiteral("Ctrl+Q")},
                   {.title = QStringLiteral("More"), .children = {menuAction(QStringLiteral("Inner"), {})}}},
                  QPoint(10, 10), &page.window());
    ASSERT_NE(menu, nullptr);
    const QList<QAction *> actions = menu->actions();
    ASSERT_EQ(actions.size(), 6);
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Save && \"load\" <b>"));
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_TRUE(actions[2]->isChecked());
    EXPECT_FALSE(actions[3]->isEnabled());
    EXPECT_EQ(actions[4]->text(), QStringLiteral("Quit\tCtrl+Q"));
    EXPECT_EQ(actions[5]->menu()->actions().size(), 1);
    EXPECT_EQ(menu->windowHandle()->transientParent(), &page.window());
    menu->close();
    settle();
    EXPECT_EQ(menu, nullptr);
}

TEST_F(PopUpMenu, theKeyboardChoosesAndTheActionRunsWhenTheMenuIsGone) {
    bool wasOpen = true;
    const QPointer<QMenu> menu =
        popUpMenu({menuAction(QStringLiteral("One"), {}), menuAction(QStringLiteral("Two"),
                                                                     [&] {
                                                                         ++chosen;
                                                                         wasOpen = isMenuOpen();
                                                                     })},
                  page.root());
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(isMenuOpen());
    QTest::keyClick(menu.get(), Qt::Key_Down);
    QTest::keyClick(menu.get(), Qt::Key_Down);
    QTest::keyClick(menu.get(), Qt::Key_Return);
    settle();
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(menu, nullptr);
    EXPECT_FALSE(isMenuOpen());
}

TEST_F(PopUpMenu, escapeChoosesNothing) {
    const QPointer<QMenu> menu =
        popUpMenu({menuAction(QStringLiteral("One"), [&] { ++chosen; })}, page.root());
    QTest::keyClick(menu.get(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(chosen, 0);
    EXPECT_EQ(menu, nullptr);
}

TEST(ToolTips, aTextIsBoundedAndClean) {
    EXPECT_EQ(toolTipText(QStringLiteral("a\x1b[31mb\tc\nd \n")), QStringLiteral("a [31mb c\nd"));
    EXPECT_EQ(toolTipText(QString(5000, QLatin1Char('x'))).size(), 2000);
    EXPECT_EQ(toolTipText(QString()), QString());
}

TEST(ToolTips, oneShowsOnceThePointerRestsAndGoesWithIt) {
    QmlPage page("Item { width: 100; height: 100\n"
                 "HoverTip { objectName: 'tip'; text: '<b>plain</b>' } }");
    auto *tip = page.root()->findChild<QObject *>(QStringLiteral("tip"));
    ASSERT_NE(tip, nullptr) << page.warnings();
    ToolTips &tips = ToolTips::instance();
    tip->setProperty("hovered", true);
    EXPECT_EQ(tips.shownText(), QString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !tips.shownText().isEmpty(); }, 10000));
    EXPECT_EQ(tips.shownText(), QStringLiteral("<b>plain</b>"));
    tip->setProperty("text", QStringLiteral("Copied"));
    EXPECT_EQ(tips.shownText(), QStringLiteral("Copied"));
    tip->setProperty("hovered", false);
    EXPECT_EQ(tips.shownText(), QString());
}

TEST(ToolTips, anItemThatGoesTakesItsTipAlong) {
    auto page = std::make_unique<QmlPage>(
        "Item { width: 100; height: 100\nHoverTip { objectName: 'tip'; text: 'x' } }");
    page->root()->findChild<QObject *>(QStringLiteral("tip"))->setProperty("hovered", true);
    EXPECT_TRUE(QTest::qWaitFor([] { return !ToolTips::instance().shownText().isEmpty(); }, 10000));
    page.reset();
    EXPECT_EQ(ToolTips::instance().shownText(), QString());
}

} // namespace
} // namespace tarnvale
