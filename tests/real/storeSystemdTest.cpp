// The store's flows on units of a real service manager.

#include "real/RealStore.h"
#include "real/UserServiceManager.h"
#include "real/servers.h"
#include "support/ManualClock.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

class RealServiceStoreTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        if (!manager.problem().empty())
            GTEST_SKIP() << manager.problem();
        python = found;
    }

    /// The record of a server that runs as the unit.
    std::optional<ListeningPort> startUnit(const std::vector<std::string> &options = {}) {
        if (!manager.run(unit, {python, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
                         folder.path(), options) ||
            !awaitListeners(port.number()))
            return std::nullopt;
        return real.record(port.number());
    }

    UserServiceManager manager;
    TemporaryFolder folder;
    ReservedPort port;
    std::string unit = "tarnvale-store-" + std::to_string(getpid()) + ".service";
    std::string python;
    RealStore real;
};

TEST_F(RealServiceStoreTest, aServiceIsRestartedAndStoppedByItsManager) {
    const auto record = startUnit();
    ASSERT_TRUE(record);
    ASSERT_EQ(record->service, unit);
    const Pid first = manager.mainPid(unit);

    ASSERT_TRUE(real.finish(real.store().restart(*record)));
    EXPECT_TRUE(eventually([&] { return manager.mainPid(unit) > 0 && manager.mainPid(unit) != first; }));
    EXPECT_EQ(real.error(), "");

    ASSERT_TRUE(awaitListeners(port.number()));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_NE(again->pid, record->pid);
    ASSERT_TRUE(real.finish(real.store().stop(*again)));
    EXPECT_EQ(manager.mainPid(unit), 0);
    EXPECT_FALSE(real.record(port.number()));
    EXPECT_EQ(real.error(), "");
}

/// A manager's failure isn't told; the row that stays tells it.
TEST_F(RealServiceStoreTest, aUnitThatMayNotBeStoppedStaysListed) {
    const auto record = startUnit({"--property=RefuseManualStop=yes"});
    ASSERT_TRUE(record);
    ASSERT_EQ(record->service, unit);
    ASSERT_NE(manager.systemctl({"stop", unit}).status, 0);
    const Pid pid = manager.mainPid(unit);
    ListeningPort unverified = *record;
    unverified.args.reset();
    ASSERT_TRUE(real.finish(real.store().stop(unverified)));
    ASSERT_NE(real.error(), "");

    ASSERT_TRUE(real.finish(real.store().stop(*record)));
    EXPECT_EQ(real.error(), "") << "what was told before is over, too";
    EXPECT_EQ(manager.mainPid(unit), pid);
    EXPECT_NE(httpGet(port.number()), std::nullopt);
    const auto after = real.record(port.number());
    ASSERT_TRUE(after);
    EXPECT_EQ(after->pid, record->pid);
    EXPECT_EQ(after->service, unit);
}

} // namespace
} // namespace tarnvale
