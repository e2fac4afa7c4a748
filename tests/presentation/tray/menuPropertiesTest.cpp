#include "presentation/tray/menuProperties.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

QString labelFor(const QString &title) {
    return menuProperties({.title = title}).value("label").toString();
}

QList<QStringList> shortcutFor(const QString &text) {
    return menuProperties({.title = "a", .shortcut = text}).value("shortcut").value<QList<QStringList>>();
}

TEST(MenuPropertiesTest, aPlainEntryIsItsLabel) {
    EXPECT_EQ(menuProperties(menuAction("Open panel", [] {})), (QVariantMap{{"label", "Open panel"}}));
}

TEST(MenuPropertiesTest, aDividerIsItsType) {
    EXPECT_EQ(menuProperties(menuDivider()), (QVariantMap{{"type", "separator"}}));
}

TEST(MenuPropertiesTest, whatIsNotTheDefaultIsSaid) {
    const QVariantMap toggle = menuProperties({.title = "a", .isEnabled = false, .isChecked = false});
    EXPECT_EQ(toggle.value("enabled"), false);
    EXPECT_EQ(toggle.value("toggle-type"), "checkmark");
    EXPECT_EQ(toggle.value("toggle-state"), 0);
    EXPECT_EQ(menuProperties({.title = "a", .isChecked = true}).value("toggle-state"), 1);
    EXPECT_EQ(menuProperties({.title = "a", .children = {menuDivider()}}).value("children-display"),
              "submenu");
}

TEST(MenuPropertiesTest, aLabelIsPlainText) {
    EXPECT_EQ(labelFor("my_app_"), QStringLiteral("my__app__"));
    EXPECT_EQ(labelFor("__"), QStringLiteral("____"));
    EXPECT_EQ(labelFor("a\nb\tc"), QStringLiteral("a b c"));
    EXPECT_EQ(labelFor(QString::fromLatin1("a\0b", 3)), QStringLiteral("a b"));
    EXPECT_EQ(labelFor("<b>&amp; – ü"), QStringLiteral("<b>&amp; – ü"));
    EXPECT_EQ(labelFor(QString(5000, 'x')), QString(200, 'x') + QStringLiteral("…"));
}

TEST(MenuPropertiesTest, aShortcutIsInTheProtocolsWords) {
    const auto keys = [](const char *text) { return shortcutFor(QString::fromLatin1(text)); };
    EXPECT_EQ(keys("Ctrl+Q"), (QList<QStringList>{{"Control", "Q"}}));
    EXPECT_EQ(keys("Ctrl+Alt+Shift+Super+P"),
              (QList<QStringList>{{"Control", "Alt", "Shift", "Super", "P"}}));
    EXPECT_EQ(keys("F9"), (QList<QStringList>{{"F9"}}));
    EXPECT_EQ(keys("Ctrl++"), (QList<QStringList>{{"Control", "plus"}}));
    EXPECT_EQ(keys("+"), (QList<QStringList>{{"plus"}}));
}

TEST(MenuPropertiesTest, aShortcutThatCannotBeSaidIsLeftOut) {
    for (const char *text : {"", "Ctrl+", "Hyper+Q", "+Q", "⌘Q+Q"})
        EXPECT_FALSE(menuProperties({.title = "a", .shortcut = QString::fromUtf8(text)}).contains("shortcut"))
            << text;
}

TEST(MenuPropertiesTest, everyPropertyHasADefault) {
    const QVariantMap all = menuProperties(
        {.title = "a", .isEnabled = false, .isChecked = true, .children = {menuDivider()}, .shortcut = "F9"});
    for (const QString &name : all.keys())
        EXPECT_EQ(menuPropertyDefaults().value(name).metaType(), all.value(name).metaType())
            << name.toStdString();
    EXPECT_TRUE(menuPropertyDefaults().contains("type"));
}

} // namespace
} // namespace tarnvale
