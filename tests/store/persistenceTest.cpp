#include "store/StoreTest.h"

#include "store/ChangeCounter.h"
#include "store/storedJson.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Numbers = std::vector<std::int64_t>;

class PersistenceTest : public StoreTest {
protected:
    std::string stored(const std::string &key) const {
        return std::get<std::string>(world.settings.values.at(key));
    }
};

TEST_F(PersistenceTest, aFirstStartBeginsEmpty) {
    start();
    EXPECT_THAT(store->watchedPorts(), IsEmpty());
    EXPECT_THAT(store->stacks(), IsEmpty());
    EXPECT_THAT(store->events(), IsEmpty());
    EXPECT_THAT(store->healthPaths(), IsEmpty());
    EXPECT_EQ(world.settings.writes, 0);
    EXPECT_EQ(error(), "");
}

TEST_F(PersistenceTest, whatWasStoredIsRead) {
    const std::vector<PortEvent> events{{.id = QUuid::createUuid(),
                                         .date = world.clock.now(),
                                         .port = 3000,
                                         .otherPorts = {},
                                         .pid = {},
                                         .name = "shop",
                                         .started = true}};
    const std::vector<Stack> stacks{{.id = QUuid::createUuid(), .name = "shop", .commands = {{"a", "/x"}}}};
    world.settings.values = {{"watchedPorts", Numbers{3000, 80}},
                             {"events", encodeEvents(events)},
                             {"stacks", encodeStacks(stacks)},
                             {"healthPaths", std::map<std::string, std::string>{{"3000", "/up"}}}};
    start();
    EXPECT_THAT(store->watchedPorts(), ElementsAre(80, 3000));
    EXPECT_EQ(store->events(), events);
    EXPECT_EQ(store->stacks(), stacks);
    EXPECT_EQ(store->healthPaths().at("3000"), "/up");
}

TEST_F(PersistenceTest, valuesOfTheWrongKindAreSkippedAndStay) {
    const auto wrong = std::map<std::string, FakeSettings::Value>{{"watchedPorts", true},
                                                                  {"events", Numbers{1}},
                                                                  {"stacks", std::string("not json")},
                                                                  {"healthPaths", std::string("text")}};
    world.settings.values = wrong;
    start();
    EXPECT_THAT(store->watchedPorts(), IsEmpty());
    EXPECT_THAT(store->events(), IsEmpty());
    EXPECT_THAT(store->stacks(), IsEmpty());
    EXPECT_THAT(store->healthPaths(), IsEmpty());
    EXPECT_EQ(world.settings.values, wrong);
    EXPECT_EQ(error(), "");
    store->saveStack("shop", {{"a", "/x"}});
    EXPECT_THAT(decodeStacks(stored("stacks")), testing::Optional(SizeIs(1))) << "until written anew";
}

TEST_F(PersistenceTest, anOverlongLogIsCut) {
    std::vector<PortEvent> events(150);
    for (PortEvent &event : events)
        event = {
            .id = QUuid::createUuid(), .date = world.clock.now(), .otherPorts = {}, .pid = {}, .name = "x"};
    world.settings.values["events"] = encodeEvents(events);
    start();
    EXPECT_THAT(store->events(), SizeIs(100));
}

TEST_F(PersistenceTest, eventsAreWrittenWhenThereAreAny) {
    start();
    scan();
    EXPECT_EQ(world.settings.writes, 0);
    addServer(42, 3000);
    scan();
    EXPECT_EQ(world.settings.writes, 1);
    EXPECT_EQ(decodeEvents(stored("events")), store->events());
    EXPECT_EQ(store->events()[0].date, world.clock.now());
}

TEST_F(PersistenceTest, clearingTheHistoryRemovesTheKey) {
    start();
    addServer(42, 3000);
    scan();
    ASSERT_THAT(store->events(), SizeIs(1));
    store->clearHistory();
    EXPECT_THAT(store->events(), IsEmpty());
    EXPECT_FALSE(world.settings.values.contains("events"));
}

TEST_F(PersistenceTest, aWriteThatFailsIsReportedOnceAndLosesNothing) {
    addServer(42, 3000);
    start();
    store->toggleWatch(record(3000));
    world.settings.isFull = true;
    const ChangeCounter errors(store.get(), &PortStore::errorChanged);
    store->toggleWatch(record(3000));
    EXPECT_EQ(error(), "Couldn't save to the settings file. What was saved before is still there.");
    EXPECT_EQ(std::get<Numbers>(world.settings.values["watchedPorts"]), Numbers{3000});
    EXPECT_THAT(store->watchedPorts(), IsEmpty()) << "here it counts all the same";
    store->launch("a", "/x", {}); // clears the text
    store->saveStack("shop", {{"a", "/x"}});
    EXPECT_EQ(error(), "") << "not told again";
    world.settings.isFull = false;
    store->saveStack("shop", {{"b", "/x"}});
    world.settings.isFull = true;
    store->saveStack("shop", {{"c", "/x"}});
    EXPECT_NE(error(), "") << "a new trouble is";
    EXPECT_EQ(errors.count(), 3);
}

TEST_F(PersistenceTest, launchAtLoginShowsWhatTheSystemSays) {
    world.loginItem.state = LoginItem::Status::enabled;
    start();
    EXPECT_TRUE(store->launchAtLogin());
    store->setLaunchAtLogin(false);
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(error(), "");
    world.loginItem.refusal = "the folder is read-only";
    store->setLaunchAtLogin(true);
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(error(), "Couldn't change launch at login: the folder is read-only");
    world.loginItem.refusal.reset();
    store->setLaunchAtLogin(true);
    EXPECT_TRUE(store->launchAtLogin());
    EXPECT_EQ(error(), "");
    EXPECT_EQ(world.loginItem.settingsOpened, 0);
}

TEST_F(PersistenceTest, aLoginItemThatNeedsApprovalOpensTheSystemsSettings) {
    world.loginItem.afterEnabling = LoginItem::Status::requiresApproval;
    start();
    store->setLaunchAtLogin(true);
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(world.loginItem.settingsOpened, 1);
}

} // namespace
} // namespace tarnvale
