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
        TARNVALE_NEEDS_PROGRAM(python, "python3");
        if (!manager.problem().empty())
            GTEST_SKIP() << manager.problem();
        ASSERT_TRUE(manager.run(unit, {python, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
                                folder.path()));
        ASSERT_TRUE(awaitListeners(port.number()));
    }

    UserServiceManager manager;
    TemporaryFolder folder;
    ReservedPort port;
    std::string unit = "tarnvale-store-" + std::to_string(getpid()) + ".service";
    RealStore real;
};

TEST_F(RealServiceStoreTest, aServiceIsRestartedAndStoppedByItsManager) {
    const auto record = real.record(port.number());
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

} // namespace
} // namespace tarnvale
