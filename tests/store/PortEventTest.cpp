#include "store/PortEvent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr Instant noon = std::chrono::sys_days{std::chrono::year{2025} / 3 / 1} + std::chrono::hours(12);

ListeningPort server(Pid pid, std::int64_t port, const std::string &folder = "/home/me/shop") {
    return {.pid = pid, .command = "node", .port = port, .cwd = folder};
}

using Ports = std::vector<std::int64_t>;

/// A start of process 42 on `port` at `date`.
PortEvent start(std::int64_t port, Instant date = noon) {
    return {.id = QUuid::createUuid(),
            .date = date,
            .port = port,
            .otherPorts = Ports{},
            .pid = 42,
            .name = "shop",
            .started = true};
}

TEST(PortEventTest, noDifferenceIsNoEvent) {
    EXPECT_EQ(withChanges({}, {}, {}, noon), std::nullopt);
    EXPECT_EQ(withChanges({start(3000)}, {server(42, 3000)}, {server(42, 3000)}, noon), std::nullopt);
}

TEST(PortEventTest, aServerThatAppearsHasStarted) {
    const auto events = withChanges({}, {}, {server(42, 3000)}, noon);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    const PortEvent &event = events->front();
    EXPECT_FALSE(event.id.isNull());
    EXPECT_EQ(event.date, noon);
    EXPECT_EQ(event.port, 3000);
    EXPECT_THAT(event.otherPorts, Optional(IsEmpty()));
    EXPECT_EQ(event.pid, 42);
    EXPECT_EQ(event.name, "shop");
    EXPECT_TRUE(event.started);
}

TEST(PortEventTest, aServerThatVanishesHasStopped) {
    const auto events = withChanges({}, {server(42, 3000)}, {}, noon);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    EXPECT_FALSE(events->front().started);
}

TEST(PortEventTest, aRestartBetweenTwoScansIsNoEvent) {
    EXPECT_EQ(withChanges({}, {server(42, 3000)}, {server(99, 3000)}, noon), std::nullopt);
}

TEST(PortEventTest, theSamePortUnderAnotherNameIsAStopAndAStart) {
    ListeningPort other = server(99, 3000);
    other.command = "ruby";
    const auto events = withChanges({}, {server(42, 3000)}, {other}, noon);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->size(), 2u);
}

TEST(PortEventTest, theSystemsOwnPortsAreNoEvents) {
    EXPECT_EQ(withChanges({}, {}, {server(42, 3000, "/")}, noon), std::nullopt);
}

TEST(PortEventTest, aPortThatLosesItsFolderHasStopped) {
    ListeningPort bare = server(42, 3000);
    bare.cwd.reset();
    const auto events = withChanges({}, {server(42, 3000)}, {bare}, noon);
    ASSERT_TRUE(events);
    EXPECT_FALSE(events->front().started);
}

TEST(PortEventTest, portsOfOneProcessAreOneEvent) {
    const auto events = withChanges({}, {}, {server(42, 5173), server(42, 3000), server(42, 4000)}, noon);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    EXPECT_EQ(events->front().port, 3000);
    EXPECT_THAT(events->front().otherPorts, Optional(ElementsAre(4000, 5173)));
}

TEST(PortEventTest, theNameIsTheFirstElements) {
    const auto events =
        withChanges({}, {}, {server(42, 5173, "/home/me/first"), server(42, 3000, "/home/me/second")}, noon);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->front().name, "first") << "in the order of the scan, not of the ports";
}

TEST(PortEventTest, everythingGoneIsOneStopAProcess) {
    const std::vector<ListeningPort> before{server(1, 3000), server(1, 3001), server(2, 4000),
                                            server(3, 5000)};
    const auto events = withChanges({}, before, {}, noon);
    ASSERT_TRUE(events);
    Ports ports;
    for (const PortEvent &event : *events) {
        EXPECT_FALSE(event.started);
        ports.push_back(event.port);
    }
    EXPECT_THAT(ports, ElementsAre(3000, 4000, 5000));
}

TEST(PortEventTest, aProcessThatGainsAndLosesAPortIsAStartAndAStop) {
    const auto events = withChanges({}, {server(42, 4000)}, {server(42, 3000)}, noon);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 2u);
    EXPECT_TRUE((*events)[0].started);
    EXPECT_EQ((*events)[0].port, 3000) << "sorted by port";
    EXPECT_FALSE((*events)[1].started);
}

TEST(PortEventTest, portsOpenedInStagesAreOneStart) {
    const PortEvent old = start(3000);
    const auto events =
        withChanges({old}, {server(42, 3000)}, {server(42, 3000), server(42, 3001)}, noon + 10s);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    EXPECT_EQ(events->front().id, old.id);
    EXPECT_EQ(events->front().date, noon) << "the older date stays";
    EXPECT_EQ(events->front().port, 3000);
    EXPECT_THAT(events->front().otherPorts, Optional(ElementsAre(3001)));
}

TEST(PortEventTest, aLowerPortThatComesLaterBecomesTheFace) {
    const auto events =
        withChanges({start(3000)}, {server(42, 3000)}, {server(42, 3000), server(42, 80)}, noon + 59'999ms);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    EXPECT_EQ(events->front().port, 80);
    EXPECT_THAT(events->front().otherPorts, Optional(ElementsAre(3000)));
}

TEST(PortEventTest, afterAMinuteItIsAnotherStart) {
    const auto events =
        withChanges({start(3000)}, {server(42, 3000)}, {server(42, 3000), server(42, 3001)}, noon + 60s);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->size(), 2u);
}

TEST(PortEventTest, aMergeKeepsItsPlace) {
    PortEvent newer = start(9000, noon + 5s);
    newer.pid = 7;
    const auto events = withChanges({newer, start(3000)}, {server(42, 3000)},
                                    {server(42, 3000), server(42, 3001)}, noon + 10s);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 2u);
    EXPECT_EQ((*events)[0].port, 9000);
    EXPECT_THAT((*events)[1].otherPorts, Optional(ElementsAre(3001)));
}

TEST(PortEventTest, aMergeWithTheSamePortLeavesTheOthersEmpty) {
    PortEvent old = start(3000);
    old.otherPorts.reset(); // as old records are
    const auto events = withChanges({old}, {}, {server(42, 3000)}, noon + 1s);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 1u);
    EXPECT_THAT(events->front().otherPorts, Optional(IsEmpty()));
}

TEST(PortEventTest, aStartAndAStopWithinAMinuteStayTwo) {
    const auto events = withChanges({start(3000)}, {server(42, 3000)}, {}, noon + 1s);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 2u);
    EXPECT_FALSE((*events)[0].started);
    EXPECT_TRUE((*events)[1].started);
}

TEST(PortEventTest, anotherProcessIsNotMerged) {
    const auto events =
        withChanges({start(3000)}, {server(42, 3000)}, {server(42, 3000), server(43, 3001)}, noon);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->size(), 2u);
}

TEST(PortEventTest, aRecordWithoutAPidMatchesNoProcess) {
    PortEvent old = start(3000);
    old.pid.reset();
    const auto events = withChanges({old}, {}, {server(42, 3001)}, noon);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->size(), 2u);
}

TEST(PortEventTest, onlyTheNewestHundredStay) {
    std::vector<PortEvent> old;
    for (int i = 0; i < 100; ++i) {
        old.push_back(start(10'000 + i, noon - 1h));
        old.back().pid = 1000 + i;
    }
    const auto events = withChanges(old, {}, {server(1, 3000), server(2, 3001)}, noon);
    ASSERT_TRUE(events);
    ASSERT_EQ(events->size(), 100u);
    EXPECT_EQ((*events)[0].port, 3000);
    EXPECT_EQ((*events)[1].port, 3001);
    EXPECT_EQ(events->back().port, 10'097);
}

} // namespace
} // namespace tarnvale
