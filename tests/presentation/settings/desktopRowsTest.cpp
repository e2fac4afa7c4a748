#include "presentation/settings/DesktopFacts.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using Kind = HotKeyAvailability::Kind;
using Server = DesktopFacts::Notifications;

DesktopFacts everything() {
    return {.tray = TrayKind::statusNotifier,
            .hotKey = {},
            .hasHotKey = true,
            .hotKeyLabel = "Alt+Super+P",
            .notifications = Server::found,
            .notificationServer = QStringLiteral("Plasma 5.27"),
            .isComposited = true};
}

DesktopRow rowOf(const DesktopFacts &facts, const char *id) {
    for (const DesktopRow &row : desktopRows(facts))
        if (row.id == QLatin1String(id))
            return row;
    return {};
}

TEST(DesktopRows, whatIsThereNeedsNoAdvice) {
    std::vector<std::string> lines;
    for (const DesktopRow &row : desktopRows(everything())) {
        lines.push_back((row.name + QStringLiteral(": ") + row.found).toStdString());
        EXPECT_FALSE(row.isMissing);
        EXPECT_EQ(row.advice, QString());
    }
    EXPECT_THAT(lines,
                testing::ElementsAre("Tray: Shows status icons", "Hot key: Alt+Super+P works from any app",
                                     "Notifications: Shown by Plasma 5.27", "Compositor: Running"));
}

TEST(DesktopRows, whatIsMissingHasOneSentenceOfAdvice) {
    DesktopFacts nothing;
    nothing.hotKey.kind = Kind::none;
    nothing.notifications = Server::missing;
    const auto rows = desktopRows(nothing);
    ASSERT_EQ(rows.size(), 4u);
    for (const DesktopRow &row : rows) {
        EXPECT_TRUE(row.isMissing) << row.name.toStdString();
        EXPECT_FALSE(row.found.isEmpty()) << row.name.toStdString();
        EXPECT_EQ(row.advice.count(QLatin1Char('.')), 1) << row.advice.toStdString();
        EXPECT_TRUE(row.advice.endsWith(QLatin1Char('.'))) << row.advice.toStdString();
    }
}

TEST(DesktopRows, theOlderTrayIsATrayToo) {
    DesktopFacts facts = everything();
    facts.tray = TrayKind::xembed;
    EXPECT_FALSE(rowOf(facts, "tray").isMissing);
}

TEST(DesktopRows, theHotKeyInEveryState) {
    struct Case {
        HotKeyAvailability key;
        bool hasHotKey;
        const char *found;
        bool isMissing;
    };
    const std::vector<Case> cases{
        {{}, true, "Alt+Super+P works from any app", false},
        {{}, false, "Alt+Super+P is held by another app", true},
        {{.kind = Kind::desktopDecides}, true, "The desktop binds the keys", false},
        {{.kind = Kind::desktopDecides, .trigger = "Meta+T"}, true, "The desktop has bound Meta+T", false},
        {{.kind = Kind::desktopDecides}, false, "The desktop has bound no keys", true},
        {{.kind = Kind::needsCommand, .command = "tarnvale --x"}, false, "No app may take a key here", true},
        {{.kind = Kind::none}, true, "No way to take a key was found", true},
    };
    for (const Case &each : cases) {
        DesktopFacts facts = everything();
        facts.hotKey = each.key;
        facts.hasHotKey = each.hasHotKey;
        const DesktopRow row = rowOf(facts, "hotKey");
        EXPECT_EQ(row.found.toStdString(), each.found);
        EXPECT_EQ(row.isMissing, each.isMissing) << each.found;
        EXPECT_EQ(row.advice.contains(QStringLiteral("tarnvale --x")), !each.key.command.empty());
    }
}

TEST(DesktopRows, aServerThatIsBeingAskedIsNotMissing) {
    DesktopFacts facts = everything();
    facts.notifications = Server::asked;
    EXPECT_EQ(rowOf(facts, "notifications").found, QStringLiteral("Looking…"));
    EXPECT_FALSE(rowOf(facts, "notifications").isMissing);
    EXPECT_FALSE(rowOf(facts, "notifications").isKnown);
    facts.notifications = Server::found;
    EXPECT_TRUE(rowOf(facts, "notifications").isKnown);
    facts.notificationServer.clear();
    EXPECT_EQ(rowOf(facts, "notifications").found, QStringLiteral("Shown by the desktop"));
}

} // namespace
} // namespace tarnvale
