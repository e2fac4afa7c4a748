#include "commands/automation/IdleWatch.h"

#include "commands/automation/ShortcutQueue.h"
#include "store/StoreTest.h"

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class IdleWatchTest : public StoreTest {
protected:
    IdleWatchTest() {
        addServer(42, 3000);
        start();
        target.store = store.get();
        watch = std::make_unique<IdleWatch>(queue, world.clock, 60s, [this] { ++ends; });
    }

    ShortcutTarget target{.desktop = world.desktop, .store = nullptr};
    ShortcutQueue queue{target};
    int ends = 0;
    std::unique_ptr<IdleWatch> watch;
};

TEST_F(IdleWatchTest, whoIsAskedNothingIsIdleAfterAWhile) {
    pass(59s);
    EXPECT_EQ(ends, 0);
    pass(1s);
    EXPECT_EQ(ends, 1);
    pass(600s);
    EXPECT_EQ(ends, 1) << "told once";
}

TEST_F(IdleWatchTest, everyQuestionBeginsTheWaitAnew) {
    const std::vector<std::function<void()>> questions{
        [&] { queue.search([](const std::vector<ListeningPort> &) {}); },
        [&] { queue.open(3000); },
        [&] { EXPECT_TRUE(queue.list([](const DevPorts &) {})); },
        [&] { EXPECT_TRUE(queue.free(3001, std::nullopt, [](const QString &) {})); },
    };
    for (const auto &ask : questions) {
        pass(50s);
        ask();
    }
    pass(59s);
    EXPECT_EQ(ends, 0);
    pass(16s);
    EXPECT_EQ(ends, 1);
}

TEST_F(IdleWatchTest, whatIsBeingDoneIsNotLeft) {
    world.processes.deaf = {42};
    int answered = 0;
    pass(59s);
    ASSERT_TRUE(queue.free(3000, std::nullopt, [&](const QString &) { ++answered; }));
    pass(1s);
    EXPECT_EQ(ends, 0);
    pass(30s);
    EXPECT_EQ(answered, 1);
    EXPECT_EQ(ends, 0);
    pass(90s);
    EXPECT_EQ(ends, 1);
}

TEST_F(IdleWatchTest, oneThatGoesTellsNothing) {
    watch.reset();
    pass(120s);
    EXPECT_EQ(ends, 0);
}

} // namespace
} // namespace tarnvale
