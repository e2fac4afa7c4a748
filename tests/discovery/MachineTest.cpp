#include "discovery/Machine.h"

#include "discovery/sortUnique.h"
#include "support/FakeMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class IsSameProcessTest : public testing::Test {
protected:
    [[nodiscard]] bool isSame(const ProcessDetails &details) const {
        return isSameProcess(m_port, details, m_now);
    }

    Instant m_now{std::chrono::hours(24 * 365 * 50)};
    ListeningPort m_port{.pid = 42, .startedAt = m_now - 60s, .args = "node server.js"};
};

TEST_F(IsSameProcessTest, theSameCommandLineAndStartIs) {
    EXPECT_TRUE(isSame({.uptime = 60, .args = "node server.js"}));
    EXPECT_TRUE(isSame({.args = "node server.js", .startedAt = m_port.startedAt}));
}

TEST_F(IsSameProcessTest, startsLessThanThreeSecondsApartAreTheSame) {
    EXPECT_TRUE(isSame({.uptime = 62.999, .args = "node server.js"}));
    EXPECT_TRUE(isSame({.uptime = 57.001, .args = "node server.js"}));
    EXPECT_FALSE(isSame({.uptime = 63, .args = "node server.js"}));
    EXPECT_FALSE(isSame({.uptime = 57, .args = "node server.js"}));
}

TEST_F(IsSameProcessTest, anotherCommandLineIsNot) {
    EXPECT_FALSE(isSame({.uptime = 60, .args = "node server.js "}));
    EXPECT_FALSE(isSame({.uptime = 60, .args = ""}));
}

TEST_F(IsSameProcessTest, aRecordWithoutCommandLineOrStartIsNever) {
    const ListeningPort whole = m_port;
    m_port.args.reset();
    EXPECT_FALSE(isSame({.uptime = 60, .args = ""}));
    m_port = whole;
    m_port.startedAt.reset();
    EXPECT_FALSE(isSame({.uptime = 60, .args = "node server.js"}));
}

TEST(MachineTest, pidsAreSortedOnce) {
    std::vector<Pid> pids{3, -1, 3, 2, 3};
    sortUnique(pids);
    EXPECT_THAT(pids, ElementsAre(-1, 2, 3));
}

TEST(MachineTest, theClockIsTheWallsByDefault) {
    FakeMachine machine;
    const auto before = std::chrono::system_clock::now();
    const Instant now = machine.Machine::now();
    EXPECT_GE(now + 1ms, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

} // namespace
} // namespace tarnvale
