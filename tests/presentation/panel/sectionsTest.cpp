// The stacks and the recent activity below the list.

#include "presentation/panel/PanelTest.h"

#include "presentation/shared/relativeTime.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"

#include <QLocale>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Sections : public PanelTest {
protected:
    void addEvents(int count) {
        std::vector<PortEvent> events;
        for (int number = 0; number < count; ++number)
            events.push_back({.id = QUuid::createUuid(),
                              .date = world.clock.now() - number * 1min,
                              .port = 3000 + number,
                              .otherPorts = {},
                              .pid = 42,
                              .name = "shop",
                              .started = number % 2 == 0});
        world.settings.values[keys::events] = encodeEvents(events);
    }

    void addStacks() {
        shop = {
            QUuid::createUuid(), "shop", {{"npm run dev", "/home/me/shop"}, {"make watch", "/home/me/shop"}}};
        const Stack docs{QUuid::createUuid(), "docs", {{"python3 -m http.server", "/home/me/docs"}}};
        world.settings.values[keys::stacks] = encodeStacks({shop, docs});
    }

    [[nodiscard]] QString shopId() const { return shop.id.toString(QUuid::WithoutBraces); }

    Stack shop;
};

TEST_F(Sections, stacksStandWithTheirCommands) {
    addStacks();
    startList();
    EXPECT_THAT(texts(list->stacks(), "name"), ElementsAre("shop", "docs"));
    EXPECT_THAT(texts(list->stacks(), "commandCount"), ElementsAre("2 commands", "1 command"));
    EXPECT_THAT(texts(list->stacks(), "toolTip"),
                ElementsAre("npm run dev\nmake watch", "python3 -m http.server"));
    EXPECT_EQ(list->stackCount(), 2);
}

TEST_F(Sections, aStackIsStarted) {
    addStacks();
    startList();
    open();
    list->startStack(shopId());
    pass(3s);
    EXPECT_THAT(world.launcher.commands(), SizeIs(2));
}

TEST_F(Sections, aStackIsDeletedAtOnce) {
    addStacks();
    startList();
    open();
    list->deleteStack(shopId());
    quiesce();
    EXPECT_THAT(texts(list->stacks(), "name"), ElementsAre("docs"));
    EXPECT_EQ(list->stackCount(), 1);
    EXPECT_THAT(store->stacks(), SizeIs(1));
}

TEST_F(Sections, aStackThatIsNotThereDoesNothing) {
    addStacks();
    startList();
    open();
    for (const QString &other : {QString(), QStringLiteral("no id"), QUuid::createUuid().toString()}) {
        list->startStack(other);
        list->deleteStack(other);
    }
    pass(3s);
    EXPECT_THAT(world.launcher.commands(), IsEmpty());
    EXPECT_EQ(list->stackCount(), 2);
}

TEST_F(Sections, recentActivityIsFoldedAwayAtFirst) {
    addEvents(3);
    startList();
    EXPECT_FALSE(list->showRecent());
    EXPECT_EQ(list->eventCount(), 3);
    EXPECT_EQ(list->shownEvents(), 0);
    list->setShowRecent(true);
    EXPECT_EQ(list->shownEvents(), 3);
    EXPECT_EQ(list->shownDays(), 1);
    list->setShowRecent(false);
    EXPECT_EQ(list->shownEvents(), 0);
}

TEST_F(Sections, sixEventsShowAndThirtyAtMost) {
    struct Row {
        int events;
        int few;
        int many;
    };
    for (const auto &[events, few, many] : {Row{6, 6, 6}, Row{7, 6, 7}, Row{30, 6, 30}, Row{40, 6, 30}}) {
        addEvents(events);
        list.reset();
        startList();
        list->setShowRecent(true);
        EXPECT_EQ(list->shownEvents(), few) << events;
        list->setShowAllRecent(true);
        EXPECT_EQ(list->shownEvents(), many) << events;
        EXPECT_EQ(list->eventCount(), events);
    }
}

TEST_F(Sections, theNewestEventsComeFirst) {
    addEvents(40);
    startList();
    list->setShowRecent(true);
    EXPECT_THAT(texts(list->events(), "ports"),
                ElementsAre("Started on 3000", "Stopped on 3001", "Started on 3002", "Stopped on 3003",
                            "Started on 3004", "Stopped on 3005"));
    EXPECT_THAT(texts(list->events(), "age"),
                ElementsAre("now", "1 min. ago", "2 min. ago", "3 min. ago", "4 min. ago", "5 min. ago"));
}

TEST_F(Sections, anEventComesInWhileTheSectionIsOpen) {
    addServer(42, 3000);
    startList();
    open();
    list->setShowRecent(true);
    EXPECT_EQ(list->shownEvents(), 0);
    world.machine.listen(42, 3001);
    world.machine.end(42);
    scan();
    EXPECT_THAT(texts(list->events(), "ports"), ElementsAre("Stopped on 3000"));
}

TEST_F(Sections, theHistoryIsClearedAtOnce) {
    addEvents(3);
    startList();
    open();
    list->setShowRecent(true);
    list->clearHistory();
    quiesce();
    EXPECT_EQ(list->eventCount(), 0);
    EXPECT_EQ(list->shownEvents(), 0);
    EXPECT_FALSE(world.settings.values.contains(keys::events));
}

Instant atNoon() {
    return std::chrono::sys_days{std::chrono::year{2025} / 3 / 5} + std::chrono::hours(12);
}

PortEvent eventAt(Instant date) {
    return {
        .id = QUuid::createUuid(), .date = date, .port = 3000, .otherPorts = {}, .pid = 1, .name = "shop"};
}

TEST(EventRows, standUnderTheirDays) {
    const auto rows = eventRows({eventAt(atNoon()), eventAt(atNoon() - 24h), eventAt(atNoon() - 24h - 1min),
                                 eventAt(atNoon() - 5 * 24h)},
                                6, atNoon());
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].day, QStringLiteral("Today"));
    EXPECT_EQ(rows[1].day, QStringLiteral("Yesterday"));
    EXPECT_EQ(rows[2].day, QStringLiteral("Yesterday"));
    EXPECT_EQ(dayCount(rows), 3);
    EXPECT_EQ(dayCount({}), 0);
}

TEST(EventRows, nameEveryPort) {
    PortEvent event = eventAt(atNoon());
    event.otherPorts = {3001, 5432};
    EXPECT_EQ(eventRows({event}, 6, atNoon()).front().ports, QStringLiteral("Stopped on 3000, 3001, 5432"));
}

TEST(EventRows, tellTheDateInFull) {
    const QString date = eventRows({eventAt(atNoon())}, 6, atNoon()).front().date;
    EXPECT_EQ(date, QLocale().toString(localTime(atNoon()), QLocale::ShortFormat));
}

TEST(EventRows, mendOddText) {
    PortEvent event = eventAt(atNoon());
    event.name = "sh\xFFop\n";
    const QString name = eventRows({event}, 6, atNoon()).front().name;
    EXPECT_TRUE(name.isValidUtf16());
    EXPECT_FALSE(name.contains(QLatin1Char('\n')));
}

TEST(StackRow, keepsAnEndlessCommandShort) {
    const StackRow row = stackRow({QUuid::createUuid(), "shop", {{std::string(100'000, 'x'), "/"}}});
    EXPECT_LT(row.toolTip.size(), 500);
    EXPECT_EQ(row.commandCount, QStringLiteral("1 command"));
    EXPECT_EQ(stackRow({}).commandCount, QStringLiteral("0 commands"));
}

TEST(RelativeTime, countsInTheLargestUnit) {
    struct Row {
        std::chrono::seconds ago;
        const char *text;
    };
    using days = std::chrono::days;
    for (const auto &[ago, text] : {Row{-10s, "now"},        {0s, "now"},
                                    {1s, "1 sec. ago"},      {59s, "59 sec. ago"},
                                    {60s, "1 min. ago"},     {59min + 59s, "59 min. ago"},
                                    {1h, "1 hr. ago"},       {23h, "23 hr. ago"},
                                    {days(1), "yesterday"},  {days(2), "2 days ago"},
                                    {days(6), "6 days ago"}, {days(7), "last wk."},
                                    {days(13), "last wk."},  {days(14), "2 wk. ago"},
                                    {days(29), "4 wk. ago"}, {days(30), "last mo."},
                                    {days(60), "2 mo. ago"}, {days(364), "12 mo. ago"},
                                    {days(365), "last yr."}, {days(730), "2 yr. ago"}})
        EXPECT_EQ(relativeTime(atNoon() - ago, atNoon()).toStdString(), text) << ago.count();
}

TEST(RelativeTime, lastNightIsNoDayAgo) {
    const Instant early = atNoon() - 11h;
    EXPECT_EQ(relativeTime(early - 2h, early).toStdString(), "2 hr. ago");
}

} // namespace
} // namespace tarnvale
