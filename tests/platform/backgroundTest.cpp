#include "platform/background.h"

#include "support/ManualClock.h"

#include <gmock/gmock.h>

#include <mutex>
#include <semaphore>
#include <set>
#include <thread>
#include <vector>

namespace tarnvale {
namespace {

TEST(BackgroundTest, aResultComesBack) {
    const QFuture<int> future = inBackground([] { return 42; });
    ASSERT_TRUE(waitFor([&] { return future.isFinished(); }));
    EXPECT_EQ(future.result(), 42);
}

TEST(BackgroundTest, thirtyTwoThreadsDoAllThatIsGiven) {
    constexpr std::size_t most = 32;
    constexpr std::size_t count = 100;
    std::counting_semaphore<> gate(0);
    std::mutex mutex;
    std::vector<std::thread::id> begun;
    const auto begunSoFar = [&] {
        const std::scoped_lock lock(mutex);
        return begun.size();
    };
    for (std::size_t i = 0; i < count; ++i)
        inBackground([&] {
            {
                const std::scoped_lock lock(mutex);
                begun.push_back(std::this_thread::get_id());
            }
            gate.acquire();
        });
    EXPECT_TRUE(waitFor([&] { return begunSoFar() == most; }));
    EXPECT_FALSE(backgroundThreads().isIdle());
    gate.release(count);
    backgroundThreads().waitForDone();
    EXPECT_EQ(begun.size(), count);
    EXPECT_EQ(std::set(begun.begin(), begun.end()).size(), most);
}

} // namespace
} // namespace tarnvale
