#include "store/ChangeCounter.h"
#include "store/StoreTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using CycleTest = StoreTest;

TEST_F(CycleTest, aStoreScansFromItsCreationOn) {
    addServer(42, 3000);
    start();
    EXPECT_THAT(listed(), ElementsAre(3000));
    addServer(43, 3001);
    pass(4999ms);
    EXPECT_THAT(listed(), ElementsAre(3000));
    pass(1ms);
    EXPECT_THAT(listed(), ElementsAre(3000, 3001));
}

TEST_F(CycleTest, whileSomebodyLooksItScansMoreOften) {
    for (const std::int64_t port : {3000, 3001})
        answers[port] = {Health::responding(200), 1};
    start();
    store->setMenuOpen(true);
    pass(5s); // the sleep that was under way isn't cut short
    addServer(42, 3000);
    pass(1999ms);
    EXPECT_THAT(listed(), IsEmpty());
    pass(1ms);
    EXPECT_THAT(listed(), ElementsAre(3000));
    store->setMenuOpen(false);
    store->setWindowVisible(true);
    addServer(43, 3001);
    pass(2s);
    EXPECT_THAT(listed(), ElementsAre(3000, 3001));
}

TEST_F(CycleTest, theFirstScanTellsNothing) {
    world.settings.values["watchedPorts"] = std::vector<std::int64_t>{3000, 9999};
    addServer(42, 3000);
    start();
    EXPECT_THAT(store->events(), IsEmpty());
    EXPECT_THAT(world.notifications.posted, IsEmpty());
    world.machine.end(42);
    scan();
    EXPECT_EQ(store->events().size(), 1u);
    EXPECT_EQ(world.notifications.posted.size(), 1u);
}

TEST_F(CycleTest, anEqualScanTellsNobody) {
    addServer(42, 3000);
    start();
    for (int i = 0; i < 40; ++i)
        scan();
    const ChangeCounter ports(store.get(), &PortStore::portsChanged);
    const ChangeCounter usage(store.get(), &PortStore::cpuHistoryChanged);
    const ChangeCounter events(store.get(), &PortStore::eventsChanged);
    const ChangeCounter errors(store.get(), &PortStore::errorChanged);
    const ChangeCounter down(store.get(), &PortStore::downWatchedPortsChanged);
    for (int i = 0; i < 10; ++i)
        scan();
    EXPECT_EQ(ports.count() + usage.count() + events.count() + errors.count() + down.count(), 0);
    world.machine.processes[42].cpu = 5;
    scan();
    EXPECT_EQ(ports.count(), 1);
    EXPECT_EQ(usage.count(), 1);
    EXPECT_EQ(events.count(), 0);
}

TEST_F(CycleTest, settingTheSameValueTellsNobody) {
    start();
    const ChangeCounter all(store.get(), &PortStore::showAllChanged);
    const ChangeCounter menu(store.get(), &PortStore::isMenuOpenChanged);
    const ChangeCounter window(store.get(), &PortStore::isWindowVisibleChanged);
    for (int i = 0; i < 2; ++i) {
        store->setShowAll(true);
        store->setMenuOpen(true);
        store->setWindowVisible(true);
    }
    EXPECT_EQ(all.count(), 1);
    EXPECT_EQ(menu.count(), 1);
    EXPECT_EQ(window.count(), 1);
}

TEST_F(CycleTest, aProcessHasOneSampleAScan) {
    addServer(42, 3000);
    world.machine.listen(42, 3001);
    world.machine.processes[42].cpu = 12.5;
    start();
    EXPECT_THAT(store->cpuHistory().at(42), ElementsAre(12.5));
    world.machine.processes[42].cpu = 25;
    scan();
    EXPECT_THAT(store->cpuHistory().at(42), ElementsAre(12.5, 25.0));
}

TEST_F(CycleTest, aPortWithoutUsageHasNoSample) {
    addServer(42, 3000);
    world.machine.processes[42].isReadable = false;
    start();
    EXPECT_THAT(store->cpuHistory(), IsEmpty());
}

TEST_F(CycleTest, theHistoryHoldsTheLastFortySamples) {
    addServer(42, 3000);
    start();
    for (int i = 1; i <= 40; ++i) {
        world.machine.processes[42].cpu = i;
        scan();
    }
    const auto &history = store->cpuHistory().at(42);
    ASSERT_EQ(history.size(), 40u);
    EXPECT_EQ(history.front(), 1);
    EXPECT_EQ(history.back(), 40);
    world.machine.end(42);
    scan();
    EXPECT_THAT(store->cpuHistory(), IsEmpty());
}

TEST_F(CycleTest, onlyDevPortsAreVisibleUnlessAllAreAsked) {
    addServer(42, 3000);
    world.machine.add({.pid = 50, .path = "/usr/sbin/systemd-thing", .args = "thing", .cwd = "/"});
    world.machine.listen(50, 111);
    start();
    EXPECT_THAT(listed(), ElementsAre(111, 3000));
    ASSERT_EQ(store->visiblePorts().size(), 1u);
    EXPECT_EQ(store->visiblePorts()[0].port, 3000);
    store->setShowAll(true);
    EXPECT_EQ(store->visiblePorts(), store->ports());
    world.machine.end(50);
    scan();
    EXPECT_THAT(store->events(), IsEmpty()) << "the log keeps its own filter";
}

TEST_F(CycleTest, twoScansAtOnceBothApply) {
    addServer(42, 3000);
    start();
    const auto one = store->refresh();
    const auto two = store->refresh();
    quiesce();
    EXPECT_TRUE(one.isReady());
    EXPECT_TRUE(two.isReady());
    addServer(43, 3001);
    pass(5s);
    EXPECT_THAT(listed(), ElementsAre(3000, 3001));
}

TEST_F(CycleTest, previewsAreTakenWhileTheWindowIsVisible) {
    for (std::int64_t port = 3000; port < 3006; ++port)
        addServer(static_cast<Pid>(port), port);
    answers = {{3000, {Health::responding(200), 5}},  {3001, {Health::responding(404), 5}},
               {3002, {Health::serverError(500), 5}}, {3003, {Health::unknown(), {}}},
               {3004, {Health::noResponse(), {}}},    {3005, {Health::responding(399), 5}}};
    start();
    const auto &asked = world.previewCapturer.asked;
    store->setMenuOpen(true);
    scan();
    EXPECT_THAT(asked, IsEmpty()) << "the panel alone causes none";
    store->setWindowVisible(true);
    scan();
    EXPECT_THAT(asked, ElementsAre(3000, 3005));
}

TEST_F(CycleTest, thePicturesOfAPortThatIsGoneGoToo) {
    addServer(42, 3000);
    answers = {{3000, {Health::responding(200), 5}}};
    world.previewCapturer.pictures = {{3000, "its page"}};
    start();
    store->setWindowVisible(true);
    scan();
    ASSERT_TRUE(store->previews().previews().contains(3000));
    world.machine.end(42);
    store->setWindowVisible(false);
    scan();
    EXPECT_TRUE(store->previews().previews().contains(3000)) << "nobody looks";
    store->setWindowVisible(true);
    scan();
    EXPECT_THAT(store->previews().previews(), IsEmpty());
}

TEST_F(CycleTest, aStoreMayGoWithAPictureUnderWay) {
    addServer(42, 3000);
    answers = {{3000, {Health::responding(200), 5}}};
    world.previewCapturer.isSlow = true;
    start();
    store->setWindowVisible(true);
    scan();
    ASSERT_EQ(store->previews().capturing(), 3000);
    store.reset();
    world.previewCapturer.answer(3000, "its page");
    settle();
}

TEST_F(CycleTest, aStoreMayGoWithAScanUnderWay) {
    addServer(42, 3000);
    start();
    const auto flow = store->refresh();
    store.reset();
    settle();
    EXPECT_TRUE(flow.isReady());
}

TEST_F(CycleTest, manyPortsMayComeAndGoBetweenTwoScans) {
    start();
    for (int round = 0; round < 4; ++round) {
        for (Pid i = 0; i < 500; ++i)
            addServer(1000 + i, 10'000 + i, "node " + std::to_string(i));
        scan();
        EXPECT_EQ(store->ports().size(), 500u);
        for (Pid i = 0; i < 500; ++i)
            world.machine.end(1000 + i);
        scan();
        EXPECT_THAT(store->ports(), IsEmpty());
        EXPECT_THAT(store->cpuHistory(), IsEmpty());
        EXPECT_EQ(store->events().size(), 100u);
    }
}

} // namespace
} // namespace tarnvale
