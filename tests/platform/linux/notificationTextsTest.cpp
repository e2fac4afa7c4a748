#include "platform/linux/notificationTexts.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

QString bodyOf(const std::string &text, const QStringList &capabilities) {
    return notificationBody({.body = text}, capabilities);
}

TEST(NotificationTextsTest, aBodyIsEscapedWhereMarkupIsRead) {
    const std::string text = "<b>a && b</b> \"c\" 'd'";
    EXPECT_EQ(bodyOf(text, {"body", "body-markup"}),
              QStringLiteral("&lt;b&gt;a &amp;&amp; b&lt;/b&gt; \"c\" 'd'"));
    EXPECT_EQ(bodyOf(text, {"body"}), QString::fromStdString(text));
}

TEST(NotificationTextsTest, longTextsAreCutAtACharacter) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "\u00e4";
    EXPECT_EQ(bodyOf(text, {}), QString(1000, QChar(0xe4)) + QChar(0x2026));
    EXPECT_EQ(notificationTitle({.title = text}), QString(200, QChar(0xe4)) + QChar(0x2026));
    EXPECT_EQ(bodyOf(std::string(1000, 'x'), {}), QString(1000, 'x'));
    // The cut comes before the escapes, so that none is cut in two.
    EXPECT_TRUE(bodyOf(std::string(2000, '<'), {"body-markup"}).endsWith(QStringLiteral("&lt;\u2026")));
}

TEST(NotificationTextsTest, bytesThatNoBusTakesAreReplaced) {
    EXPECT_EQ(bodyOf("a\xff"
                     "b",
                     {}),
              QStringLiteral("a\ufffdb"));
    EXPECT_EQ(bodyOf(std::string("a\0b", 3), {}), QStringLiteral("ab"));
    EXPECT_EQ(notificationTitle({.title = "\xc3"}), QStringLiteral("\ufffd"));
}

TEST(NotificationTextsTest, buttonsComeBehindTheDefaultAction) {
    const std::vector<NotificationAction> buttons{{"killAndRetry", "Kill Holder & Retry"},
                                                  {"show", "Show in Tarnvale"}};
    EXPECT_EQ(notificationActions(buttons, {"body", "actions"}),
              (QStringList{"default", "Open Tarnvale", "killAndRetry", "Kill Holder & Retry", "show",
                           "Show in Tarnvale"}));
    EXPECT_EQ(notificationActions({}, {"actions"}), (QStringList{"default", "Open Tarnvale"}));
    EXPECT_EQ(notificationActions(buttons, {"body"}), QStringList());
    EXPECT_EQ(notificationActions(buttons, {}), QStringList());
}

} // namespace
} // namespace tarnvale
