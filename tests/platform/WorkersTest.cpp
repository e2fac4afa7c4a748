#include "platform/Workers.h"

#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QCoroTask>
#include <QThread>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <numeric>
#include <semaphore>
#include <set>
#include <string>
#include <vector>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

/// Opens a gate when it goes.
class OpensWhenGone {
public:
    explicit OpensWhenGone(std::binary_semaphore &gate) : m_gate(gate) {}
    OpensWhenGone(const OpensWhenGone &) = delete;
    OpensWhenGone &operator=(const OpensWhenGone &) = delete;
    ~OpensWhenGone() { m_gate.release(); }

private:
    std::binary_semaphore &m_gate;
};

TEST(WorkersTest, oneThreadKeepsTheOrder) {
    Workers workers(1);
    std::vector<int> done; // only that thread touches it
    std::set<std::thread::id> threads;
    for (int i = 0; i < 100; ++i)
        workers.run([&, i] {
            done.push_back(i);
            threads.insert(std::this_thread::get_id());
        });
    workers.waitForDone();
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(done, expected);
    EXPECT_THAT(threads, ElementsAre(testing::Ne(std::this_thread::get_id())));
}

TEST(WorkersTest, aResultComesBackThroughTheEventLoop) {
    Workers workers(1);
    const QFuture<std::string> future = workers.run([] { return std::string("found"); });
    workers.waitForDone();
    EXPECT_TRUE(workers.isIdle());
    EXPECT_TRUE(future.isRunning()) << "not before the main thread listens";
    settle();
    ASSERT_TRUE(future.isFinished());
    EXPECT_FALSE(future.isCanceled());
    EXPECT_EQ(future.result(), "found");
}

TEST(WorkersTest, resultsOfOneThreadComeBackInOrder) {
    Workers workers(1);
    std::vector<int> told;
    std::vector<QFuture<void>> all;
    for (int i = 0; i < 20; ++i)
        all.push_back(workers.run([i] { return i; }).then([&](int result) { told.push_back(result); }));
    ASSERT_TRUE(waitFor([&] { return told.size() == 20; }));
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

QCoro::Task<> addSum(Workers &workers, std::vector<int> &sums, std::set<QThread *> &threads) {
    int total = 0;
    for (int i = 1; i <= 10; ++i) {
        const auto work = [i] { return std::vector<int>(1000, i); };
        const QFuture<std::vector<int>> future = workers.run(work);
        const std::vector<int> found = co_await future;
        total = std::accumulate(found.begin(), found.end(), total);
        threads.insert(QThread::currentThread());
    }
    sums.push_back(total);
}

TEST(WorkersTest, flowsAwaitResultsOnTheMainThread) {
    Workers workers(4);
    std::vector<int> sums;
    std::set<QThread *> threads;
    for (int i = 0; i < 8; ++i)
        addSum(workers, sums, threads);
    ASSERT_TRUE(waitFor([&] { return sums.size() == 8; }));
    EXPECT_THAT(sums, testing::Each(55'000));
    EXPECT_THAT(threads, ElementsAre(QCoreApplication::instance()->thread()));
}

TEST(WorkersTest, workMayHoldWhatCannotBeCopied) {
    Workers workers(1);
    const QFuture<int> future = workers.run([held = std::make_unique<int>(7)] { return *held; });
    ASSERT_TRUE(waitFor([&] { return future.isFinished(); }));
    EXPECT_EQ(future.result(), 7);
}

TEST(WorkersTest, whatWorkHeldHasGoneWhenItsEndIsTold) {
    Workers workers(1);
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    const QFuture<int> future = workers.run([held = std::move(held)] { return *held; });
    ASSERT_TRUE(waitFor([&] { return future.isFinished(); }));
    EXPECT_TRUE(watched.expired());
}

TEST(WorkersTest, anIdleThreadIsUsedAgain) {
    Workers workers(8);
    std::set<std::thread::id> threads;
    for (int i = 0; i < 20; ++i) {
        workers.run([&] { threads.insert(std::this_thread::get_id()); });
        workers.waitForDone();
    }
    EXPECT_THAT(threads, SizeIs(1));
}

TEST(WorkersTest, workThatWaitsIsNoHindranceForMoreThreads) {
    Workers workers(2);
    std::binary_semaphore gate(0);
    workers.run([&] { gate.acquire(); });
    const QFuture<int> other = workers.run([&] {
        gate.release();
        return 1;
    });
    ASSERT_TRUE(waitFor([&] { return other.isFinished() && workers.isIdle(); }));
}

TEST(WorkersTest, workMayGiveWork) {
    Workers workers(1);
    std::vector<std::string> done;
    workers.run([&] {
        workers.run([&] {
            done.emplace_back("inner");
            workers.run([&] { done.emplace_back("innermost"); });
        });
        done.emplace_back("outer");
    });
    workers.waitForDone();
    EXPECT_THAT(done, ElementsAre("outer", "inner", "innermost"));
}

TEST(WorkersTest, goingWaitsForWhatIsUnderWayAndDropsTheRest) {
    auto workers = std::make_unique<Workers>(1);
    std::binary_semaphore begun(0);
    std::binary_semaphore gate(0);
    bool isRestDone = false;
    const QFuture<std::string> first = workers->run([&] {
        begun.release();
        gate.acquire();
        return std::string("whole");
    });
    begun.acquire();
    const QFuture<std::string> second =
        workers->run([&isRestDone, opens = std::make_unique<OpensWhenGone>(gate)] {
            isRestDone = true;
            return std::string("never");
        });
    workers.reset();
    EXPECT_FALSE(isRestDone);
    settle();
    ASSERT_TRUE(first.isFinished());
    EXPECT_EQ(first.result(), "whole");
    ASSERT_TRUE(second.isFinished());
    EXPECT_FALSE(second.isCanceled());
    EXPECT_EQ(second.result(), "") << "nobody awaits it for ever";
}

TEST(WorkersTest, whatTheLastWorkGivesIsDropped) {
    auto workers = std::make_unique<Workers>(1);
    std::binary_semaphore begun(0);
    std::binary_semaphore gate(0);
    bool isLateDone = false;
    QFuture<int> late;
    workers->run([&, giver = workers.get()] {
        begun.release();
        gate.acquire();
        late = giver->run([&] {
            isLateDone = true;
            return 1;
        });
    });
    begun.acquire();
    workers->run([opens = std::make_unique<OpensWhenGone>(gate)] {});
    workers.reset();
    EXPECT_FALSE(isLateDone);
    settle();
    ASSERT_TRUE(late.isFinished());
    EXPECT_EQ(late.result(), 0);
}

TEST(WorkersTest, idleThreadsEndWithThem) {
    for (int i = 0; i < 20; ++i) {
        Workers workers(4);
        std::atomic<int> done = 0;
        for (int k = 0; k < i; ++k)
            workers.run([&] { ++done; });
        workers.waitForDone();
        EXPECT_EQ(done, i);
    }
}

} // namespace
} // namespace tarnvale
