#include "store/ChangeCounter.h"
#include "store/StoreTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class HealthTest : public StoreTest {
protected:
    HealthTest() {
        addServer(42, 3000);
        answers = {{3000, {Health::responding(200), 7}}};
    }

    void look() {
        store->setMenuOpen(true);
        scan();
    }
};

TEST_F(HealthTest, withNobodyLookingNothingIsProbed) {
    start();
    pass(60s);
    EXPECT_THAT(probed, IsEmpty());
}

TEST_F(HealthTest, aVisiblePortIsProbedWhileSomebodyLooks) {
    start();
    look();
    EXPECT_THAT(probed, ElementsAre(FieldsAre(3000, "/", 1500)));
    EXPECT_THAT(store->health(), ElementsAre(Pair("42:3000", Health::responding(200))));
    EXPECT_THAT(store->responseTimes(), ElementsAre(Pair("42:3000", 7)));
}

TEST_F(HealthTest, itIsDueAgainAfterMoreThanThirtySeconds) {
    start();
    look();
    const auto passTo = [&](std::chrono::milliseconds time) {
        // No cycle of its own may come in between.
        world.machine.tick(time);
        world.clock.advance(time);
    };
    store->setMenuOpen(false);
    pass(5s);
    probed.clear();
    passTo(25s); // 30 s since the probe, to the millisecond
    store->setMenuOpen(true);
    finish(store->refreshHealth());
    EXPECT_THAT(probed, IsEmpty());
    passTo(1ms);
    finish(store->refreshHealth());
    EXPECT_EQ(probed.size(), 1u);
}

TEST_F(HealthTest, aSecondPassDoesNotRepeatTheFirst) {
    answers.clear();
    start();
    const auto one = store->refreshHealth();
    const auto two = store->refreshHealth();
    quiesce();
    EXPECT_EQ(probed.size(), 1u);
    EXPECT_TRUE(two.isReady());
    EXPECT_FALSE(one.isReady());
}

TEST_F(HealthTest, whatIsNoWebserverByNameIsNotProbed) {
    world.machine.add({.pid = 50, .path = "/usr/bin/postgres", .args = "postgres", .cwd = "/var/lib/x"});
    world.machine.listen(50, 5432);
    start();
    look();
    EXPECT_EQ(probed.size(), 1u);
}

TEST_F(HealthTest, aPathOfTheUsersIsAskedFor) {
    start();
    store->setHealthPath(" /health\t", record(3000));
    quiesce();
    EXPECT_THAT(probed, ElementsAre(FieldsAre(3000, "/health", 1500))) << "at once";
    using Paths = std::map<std::string, std::string>;
    EXPECT_EQ(std::get<Paths>(world.settings.values["healthPaths"]), (Paths{{"3000", "/health"}}));
    probed.clear();
    store->setHealthPath("/", record(3000));
    quiesce();
    EXPECT_THAT(probed, ElementsAre(FieldsAre(3000, "/", 1500)));
    EXPECT_THAT(store->healthPaths(), IsEmpty());
    EXPECT_EQ(std::get<Paths>(world.settings.values["healthPaths"]), Paths{});
}

TEST_F(HealthTest, aPathThatIsNoneBecomesTheRoot) {
    start();
    for (const char *path : {"health", "/a b", "/\u00e9", "", "  ", "/\x01"}) {
        store->setHealthPath("/x", record(3000));
        store->setHealthPath(path, record(3000));
        EXPECT_THAT(store->healthPaths(), IsEmpty()) << path;
    }
    store->setHealthPath("/" + std::string(200, 'x'), record(3000));
    EXPECT_THAT(store->healthPaths(), IsEmpty());
    store->setHealthPath("/" + std::string(199, 'x'), record(3000));
    EXPECT_EQ(store->healthPaths().size(), 1u);
}

TEST_F(HealthTest, anAnswerWithoutATimeClearsTheOldOne) {
    start();
    look();
    answers[3000] = {Health::noResponse(), {}};
    pass(32s);
    EXPECT_THAT(store->health(), ElementsAre(Pair("42:3000", Health::noResponse())));
    EXPECT_THAT(store->responseTimes(), IsEmpty());
}

TEST_F(HealthTest, whatHasGoneIsForgottenAtTheNextPass) {
    start();
    look();
    world.machine.end(42);
    addServer(43, 3001);
    answers[3001] = {Health::responding(204), 1};
    scan();
    EXPECT_THAT(store->health(), ElementsAre(Pair("43:3001", Health::responding(204))));
    EXPECT_THAT(store->responseTimes(), ElementsAre(Pair("43:3001", 1)));
}

TEST_F(HealthTest, anEqualResultTellsNobody) {
    start();
    look();
    const ChangeCounter health(store.get(), &PortStore::healthChanged);
    const ChangeCounter times(store.get(), &PortStore::responseTimesChanged);
    pass(40s);
    EXPECT_GE(probed.size(), 2u);
    EXPECT_EQ(health.count() + times.count(), 0);
}

TEST_F(HealthTest, whatIsKnownDecidesWhatIsAWebsite) {
    addServer(50, 5432); // no website by its number
    struct Row {
        std::int64_t port;
        std::optional<Health> known;
        bool isWeb;
    };
    const std::vector<Row> rows{
        {3000, {}, true},
        {3000, Health::responding(404), true},
        {3000, Health::serverError(500), true},
        {3000, Health::unknown(), false},
        {3000, Health::noResponse(), true},
        {5432, {}, false},
    };
    for (const Row &row : rows) {
        start();
        if (row.known) {
            answers[3000] = {*row.known, {}};
            look();
        }
        EXPECT_EQ(store->isWebPort(record(row.port)), row.isWeb) << row.port;
    }
}

TEST_F(HealthTest, aStoreMayGoWithAProbeUnderWay) {
    answers.clear();
    start();
    const auto flow = store->refreshHealth();
    store.reset();
    ASSERT_EQ(unanswered.size(), 1u);
    unanswered[0]->addResult(HealthCheck::Result{Health::unknown(), {}});
    unanswered[0]->finish();
    settle();
    EXPECT_TRUE(flow.isReady());
    unanswered.clear();
}

} // namespace
} // namespace tarnvale
