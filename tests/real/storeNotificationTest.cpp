// From a server that stops to the click that starts it again, with a real server of notifications between.

#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/Dunst.h"
#include "real/RealProcess.h"
#include "real/RealStore.h"
#include "real/servers.h"
#include "support/ManualClock.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

class NotifyingStoreTest : public testing::Test {
protected:
    void SetUp() override {
        TARNVALE_NEEDS_PROGRAM(found, "python3");
        python = found;
        if (!dunst.problem().empty())
            GTEST_SKIP() << dunst.problem();
        ASSERT_TRUE(dunst.start());
    }

    PrivateBus bus;
    VirtualDisplay display;
    Dunst dunst{bus, display};
    TemporaryFolder project;
    ReservedPort port;
    std::string python;
};

TEST_F(NotifyingStoreTest, theClickOnStartAgainStartsTheServer) {
    DesktopNotifications notifications(bus.connect());
    RealStore real;
    real.shownBy = &notifications;
    RealProcess process({python, "-m", "http.server", "--bind", "127.0.0.1", port.text()},
                        {.folder = project.path()});
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto record = real.record(port.number());
    ASSERT_TRUE(record);
    real.store().toggleWatch(*record);
    ASSERT_TRUE(waitFor([&] { return !real.store().isScanning(); }));
    process.end();
    ASSERT_FALSE(real.record(port.number()));

    ASSERT_TRUE(dunst.isDisplayed("1"));
    dunst.choose("Start Again");
    ASSERT_TRUE(waitFor([&] { return listenerCount(port.number()) > 0; }));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->cwd, project.path());
    ASSERT_TRUE(real.finish(real.store().stop(*again)));
}

} // namespace
} // namespace tarnvale
