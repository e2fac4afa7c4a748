// Push buttons, switches, fields and sheets under pointer, keyboard and screen reader.

#include "presentation/design/QmlPage.h"
#include "presentation/shared/screenItems.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

std::string page(const std::string &part) {
    return "Item { id: root; width: 400; height: 300; property int times: 0; property string told\n" + part +
           "\n}";
}

TEST(Controls, aPushButtonIsPressedByPointerAndKeys) {
    QmlPage page(tarnvale::page("PushButton { objectName: 'part'; title: 'Save'; symbol: 'checkmark'; "
                                "kind: 'prominent'; onActivated: ++root.times }"));
    ASSERT_EQ(page.warnings(), "");
    QQuickItem *const part = page.find("part");
    clickOn(page.window(), *part);
    part->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&page.window(), Qt::Key_Return);
    EXPECT_EQ(page.root()->property("times"), 2);
}

TEST(Controls, aLongTitleStaysWithinItsButton) {
    QmlPage page(tarnvale::page("PushButton { objectName: 'part'; width: 90; symbol: 'globe'; "
                                "title: 'A title that is far too long for it' }"));
    ASSERT_EQ(page.warnings(), "");
    for (const QQuickItem *child : page.find("part")->findChildren<QQuickItem *>())
        EXPECT_LE(child->mapToItem(page.find("part"), QPointF(child->width(), 0)).x(), 90 + 4)
            << child->metaObject()->className();
}

TEST(Controls, aSwitchAsksForTheOtherStateAndKeepsItsOwn) {
    QAccessible::setActive(true);
    for (const char *const kind : {"Switch", "CheckBox"}) {
        QmlPage page(tarnvale::page(std::string(kind) +
                                    " { objectName: 'part'; title: 'Launch at login'; checked: true; "
                                    "onToggled: checked => root.told += checked + ' ' }"));
        ASSERT_EQ(page.warnings(), "");
        QQuickItem *const part = page.find("part");
        clickOn(page.window(), *part);
        part->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&page.window(), Qt::Key_Space);
        EXPECT_EQ(page.root()->property("told"), QStringLiteral("false false ")) << kind;
        QAccessibleInterface *const face = QAccessible::queryAccessibleInterface(part);
        EXPECT_EQ(face->role(), QAccessible::CheckBox);
        EXPECT_TRUE(face->state().checkable && face->state().checked);
        EXPECT_EQ(face->text(QAccessible::Name), QStringLiteral("Launch at login"));
    }
}

TEST(Controls, aFieldTellsWhatIsTypedAndWhenItIsDone) {
    QmlPage page(tarnvale::page("TextField { objectName: 'part'; prompt: '/'; "
                                "onEdited: text => root.told = text; onAccepted: ++root.times }"));
    ASSERT_EQ(page.warnings(), "");
    clickOn(page.window(), *page.find("part"));
    QTest::keyClick(&page.window(), Qt::Key_U);
    QTest::keyClick(&page.window(), Qt::Key_P);
    QTest::keyClick(&page.window(), Qt::Key_Return);
    EXPECT_EQ(page.root()->property("told").toString().toStdString(), "up");
    EXPECT_EQ(page.root()->property("times"), 1);
}

TEST(Controls, theArrowKeysChooseASegment) {
    QmlPage page(
        tarnvale::page("SegmentedPicker { objectName: 'part'; title: 'Group'; focus: true; current: 1; "
                       "options: ['One', 'Two', 'Three']; onChosen: index => { root.told += index; "
                       "current = index } }"));
    ASSERT_EQ(page.warnings(), "");
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Left, Qt::Key_Left})
        QTest::keyClick(&page.window(), key);
    EXPECT_EQ(page.root()->property("told"), QStringLiteral("210")) << "it ends at both ends";
}

constexpr const char *const sheetPage =
    "PushButton { objectName: 'behind'; title: 'Behind'; focus: true; onActivated: ++root.times; "
    "enabled: !theSheet.isOpen }\n"
    "Sheet { id: theSheet; objectName: 'sheet'; anchors.fill: parent; title: 'A sheet'; onDismissed: isOpen "
    "= false\n"
    "  sheet: FocusScope { implicitWidth: 200; implicitHeight: 100; focus: true\n"
    "    Column { PushButton { objectName: 'first'; title: 'First'; focus: true }\n"
    "             PushButton { objectName: 'second'; title: 'Second' } } } }";

/// The title of what has the keyboard.
QString focused(QmlPage &page) {
    const QQuickItem *const item = page.window().activeFocusItem();
    return item == nullptr ? QString() : item->property("title").toString();
}

TEST(Sheets, keepTheKeyboardAndGiveItBack) {
    QmlPage page(tarnvale::page(sheetPage));
    ASSERT_EQ(page.warnings(), "");
    page.find("behind")->forceActiveFocus();
    EXPECT_EQ(focused(page), QStringLiteral("Behind"));
    page.find("sheet")->setProperty("isOpen", true);
    EXPECT_EQ(focused(page), QStringLiteral("First"));
    for (const char *next : {"Second", "First", "Second"}) {
        QTest::keyClick(&page.window(), Qt::Key_Tab);
        EXPECT_EQ(focused(page), QLatin1String(next));
    }
    QTest::keyClick(&page.window(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focused(page), QStringLiteral("First"));
    QTest::keyClick(&page.window(), Qt::Key_Escape);
    EXPECT_EQ(page.find("sheet")->property("isOpen"), false);
    EXPECT_EQ(focused(page), QStringLiteral("Behind"));
}

TEST(Sheets, letNoClickThrough) {
    QmlPage page(tarnvale::page(sheetPage));
    page.find("sheet")->setProperty("isOpen", true);
    clickOn(page.window(), *page.find("behind"));
    EXPECT_EQ(page.root()->property("times"), 0);
    EXPECT_EQ(page.find("sheet")->property("isOpen"), true) << "it must be answered";
    page.find("sheet")->setProperty("closesOnWash", true);
    clickOn(page.window(), *page.find("behind"));
    EXPECT_EQ(page.find("sheet")->property("isOpen"), false);
}

TEST(Sheets, thatAreOpenFromTheStartHaveTheKeyboard) {
    std::string body = sheetPage;
    body.replace(body.find("Sheet {"), 7, "Sheet { isOpen: true;");
    QmlPage page(tarnvale::page(body));
    EXPECT_TRUE(QTest::qWaitFor([&] { return focused(page) == QStringLiteral("First"); }));
}

} // namespace
} // namespace tarnvale
