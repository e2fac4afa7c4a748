// The store's flows on containers of a real engine.

#include "real/DockerEngine.h"
#include "real/RealStore.h"
#include "real/servers.h"
#include "support/ManualClock.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class RealContainerStoreTest : public testing::Test {
protected:
    static void SetUpTestSuite() { engine = new DockerEngine; }
    static void TearDownTestSuite() {
        delete engine;
        engine = nullptr;
    }

    void SetUp() override {
        if (!engine->problem().empty())
            GTEST_SKIP() << engine->problem();
        ASSERT_TRUE(engine->serve("shop", "127.0.0.1:" + port.text() + ":80"));
        ASSERT_TRUE(awaitListeners(port.number()));
        record = real.record(port.number());
        ASSERT_TRUE(record);
        ASSERT_EQ(record->containerName(), "shop");
    }
    void TearDown() override {
        if (engine->problem().empty())
            engine->remove("shop");
    }

    static DockerEngine *engine;
    ReservedPort port;
    RealStore real;
    std::optional<ListeningPort> record;
};

DockerEngine *RealContainerStoreTest::engine = nullptr;

TEST_F(RealContainerStoreTest, aContainerIsRestartedThenStopped) {
    ASSERT_TRUE(real.finish(real.store().restart(*record), 60s));
    EXPECT_EQ(real.error(), "");
    ASSERT_TRUE(awaitListeners(port.number()));
    const auto again = real.record(port.number());
    ASSERT_TRUE(again);
    EXPECT_NE(again->pid, record->pid) << "another proxy";
    EXPECT_EQ(httpGet(port.number()), DockerEngine::page);
    ASSERT_TRUE(real.finish(real.store().stop(*again), 60s));
    EXPECT_EQ(real.error(), "");
    EXPECT_FALSE(real.record(port.number()));
}

TEST_F(RealContainerStoreTest, itsOutputIsFollowed) {
    ASSERT_TRUE(httpGet(port.number()));
    const auto source = real.store().logSource(*record);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->kind, LogSource::Kind::docker);
    EXPECT_EQ(source->container, "shop");
}

TEST_F(RealContainerStoreTest, aContainerThatWasRemovedIsSaid) {
    engine->remove("shop");
    ASSERT_TRUE(real.finish(real.store().stop(*record), 60s));
    EXPECT_THAT(real.error(), HasSubstr("already exited."));
}

TEST_F(RealContainerStoreTest, anEngineThatHangsIsGivenUp) {
    real.tools.longestRun = 1s;
    engine->setHanging(true);
    auto flow = real.store().stop(*record);
    const bool isDone = waitFor([&] { return flow.isReady(); }, 30s);
    engine->setHanging(false);
    EXPECT_TRUE(isDone);
    EXPECT_EQ(real.error(), "") << "an empty answer reports nothing";
    real.tools.longestRun = 1min;
    ASSERT_TRUE(real.finish(real.store().stop(*record), 60s));
    EXPECT_EQ(real.error(), "") << "the next attempt meets a living engine";
    EXPECT_FALSE(real.record(port.number()));
}

} // namespace
} // namespace tarnvale
