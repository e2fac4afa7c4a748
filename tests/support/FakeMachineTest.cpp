#include "support/FakeMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FakeMachineTest, aProcessStartsWhenItIsAddedAndAgesWithTheClock) {
    FakeMachine machine;
    machine.add({.pid = 42});
    const Instant start = machine.now();
    machine.tick(90s);
    const ProcessDetailsMap details = machine.processDetails({42});
    EXPECT_EQ(details.at(42).uptime, 90);
    EXPECT_EQ(details.at(42).startedAt, start);
    EXPECT_EQ(machine.now(), start + 90s);
}

TEST(FakeMachineTest, anEndedProcessTakesItsSocketsAlong) {
    FakeMachine machine;
    machine.add({.pid = 42, .path = "/usr/bin/node"});
    machine.add({.pid = 43, .path = "/usr/bin/php"});
    machine.listen(42, 3000);
    machine.listen(43, 8000);
    machine.end(42);
    const auto ports = machine.listeningSockets();
    ASSERT_EQ(ports.size(), 1u);
    EXPECT_EQ(ports[0].command, "php");
    EXPECT_THAT(machine.processDetails({42}), IsEmpty());
}

TEST(FakeMachineTest, socketsAreMergedLikeThoseOfAnyMachine) {
    FakeMachine machine;
    machine.add({.pid = 43, .path = "/usr/sbin/nginx"});
    machine.add({.pid = 42, .path = "/usr/sbin/nginx"});
    machine.listen(43, 80, true);
    machine.listen(42, 80);
    const auto ports = machine.listeningSockets();
    ASSERT_EQ(ports.size(), 1u);
    EXPECT_EQ(ports[0].pid, 42);
    EXPECT_TRUE(ports[0].isExposed);
}

TEST(FakeMachineTest, anUnreadableProcessIsInTheTableOnly) {
    FakeMachine machine;
    machine.add({.pid = 42, .path = "/usr/bin/node", .cwd = "/home/me/shop", .isReadable = false});
    EXPECT_THAT(machine.currentDetails({42}), IsEmpty());
    EXPECT_THAT(machine.workingDirectories({42}), IsEmpty());
    EXPECT_EQ(machine.processTable({42}).at(42).path, "/usr/bin/node");
}

TEST(FakeMachineTest, questionsAreRecordedInOrderWithSortedPids) {
    FakeMachine machine;
    static_cast<void>(machine.processDetails({43, 42}));
    static_cast<void>(machine.ownApplication());
    EXPECT_THAT(machine.questions(), ElementsAre("processDetails 42 43", "ownApplication"));
}

} // namespace
} // namespace tarnvale
