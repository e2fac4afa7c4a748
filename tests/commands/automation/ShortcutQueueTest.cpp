#include "commands/automation/ShortcutQueue.h"

#include "store/StoreTest.h"

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Signal = FakeProcessControl::Signal;

class ShortcutQueueTest : public StoreTest {
protected:
    ShortcutQueueTest() {
        addServer(42, 3000);
        addServer(43, 3001);
        start();
        target.store = store.get();
    }

    [[nodiscard]] long scans() const {
        return std::ranges::count(world.machine.questions(), "listeningSockets");
    }

    [[nodiscard]] bool list() {
        return queue->list([this](const DevPorts &ports) { lists.push_back(ports.lines); });
    }

    [[nodiscard]] bool free(std::int64_t port) {
        return queue->free(port, std::nullopt,
                           [this](const QString &dialog) { dialogs.push_back(dialog.toStdString()); });
    }

    ShortcutTarget target{.desktop = world.desktop, .store = nullptr};
    std::unique_ptr<ShortcutQueue> queue = std::make_unique<ShortcutQueue>(target);
    std::vector<QStringList> lists;
    std::vector<std::string> dialogs;
};

TEST_F(ShortcutQueueTest, thoseWhoComeDuringAScanShareTheNextOne) {
    world.machine.forgetQuestions();
    ASSERT_TRUE(queue->list([this](const DevPorts &ports) {
        lists.push_back(ports.lines);
        addServer(44, 3002); // no scan looks at this moment
    }));
    for (int i = 0; i < 9; ++i)
        ASSERT_TRUE(list());
    quiesce();
    ASSERT_EQ(lists.size(), 10u);
    EXPECT_EQ(scans(), 2) << "one for the first, one for all the others";
    EXPECT_EQ(lists.front().size(), 2);
    EXPECT_EQ(lists.back().size(), 3);
}

TEST_F(ShortcutQueueTest, whoAsksForTheSamePortSharesItsStop) {
    ASSERT_TRUE(free(3000));
    ASSERT_TRUE(free(3001));
    ASSERT_TRUE(free(3000));
    quiesce();
    pass(100ms);
    ASSERT_TRUE(free(3000));
    pass(1s);
    EXPECT_THAT(world.processes.sent,
                testing::UnorderedElementsAre(Signal{42, SIGTERM}, Signal{43, SIGTERM}));
    EXPECT_THAT(dialogs,
                testing::UnorderedElementsAre("Stopped shop on port 3000.", "Stopped shop on port 3000.",
                                              "Stopped shop on port 3000.", "Stopped shop on port 3001."));
    ASSERT_TRUE(free(3000));
    pass(1s);
    EXPECT_EQ(dialogs.back(), "Nothing is listening on port 3000.");
}

TEST_F(ShortcutQueueTest, aFloodIsRefusedUntilSomeAreAnswered) {
    for (std::size_t i = 0; i < ShortcutQueue::mostWaiting; ++i)
        ASSERT_TRUE(i % 2 == 0 ? list() : free(3000));
    EXPECT_FALSE(list());
    EXPECT_FALSE(free(3001));
    pass(1s);
    EXPECT_EQ(lists.size(), 8u);
    EXPECT_EQ(dialogs.size(), 8u);
    for (std::size_t i = 0; i < ShortcutQueue::mostWaiting; ++i)
        EXPECT_TRUE(list()) << "every place is free again";
    pass(1s);
    EXPECT_EQ(lists.size(), 24u);
}

/// A program that was started by the search itself.
class FirstSearchTest : public StoreTest {
protected:
    FirstSearchTest() {
        addServer(42, 3000);
        store = std::make_unique<PortStore>(world.platform());
        target.store = store.get();
    }

    void search() {
        queue->search([this](const std::vector<ListeningPort> &ports) { found.push_back(ports.size()); });
    }

    ShortcutTarget target{.desktop = world.desktop, .store = nullptr};
    std::unique_ptr<ShortcutQueue> queue = std::make_unique<ShortcutQueue>(target);
    std::vector<std::size_t> found;
};

TEST_F(FirstSearchTest, itWaitsForTheFirstScan) {
    search();
    search();
    EXPECT_THAT(found, testing::IsEmpty());
    quiesce();
    EXPECT_THAT(found, ElementsAre(1u, 1u));
    search();
    EXPECT_THAT(found, ElementsAre(1u, 1u, 1u)) << "at once";
}

TEST_F(FirstSearchTest, whoComesWhenTooManyWaitFindsNothing) {
    for (std::size_t i = 0; i < ShortcutQueue::mostWaiting; ++i)
        search();
    EXPECT_THAT(found, testing::IsEmpty());
    search();
    EXPECT_THAT(found, ElementsAre(0u));
    quiesce();
    EXPECT_EQ(found.size(), ShortcutQueue::mostWaiting + 1);
    EXPECT_EQ(found.back(), 1u);
}

TEST_F(FirstSearchTest, aStoreThatGoesMeanwhileHasNothing) {
    search();
    store.reset();
    quiesce();
    EXPECT_THAT(found, testing::Each(0u));
}

TEST_F(FirstSearchTest, aQueueThatGoesMeanwhileAnswersNobody) {
    search();
    queue.reset();
    quiesce();
    EXPECT_THAT(found, testing::IsEmpty());
}

TEST_F(ShortcutQueueTest, aQueueThatGoesAnswersNobody) {
    ASSERT_TRUE(list());
    ASSERT_TRUE(free(3000));
    queue.reset();
    pass(1s);
    EXPECT_TRUE(lists.empty());
    EXPECT_TRUE(dialogs.empty());
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM})) << "what was begun is finished";
}

TEST_F(ShortcutQueueTest, anAnswerMayAskAgain) {
    ASSERT_TRUE(queue->list([this](const DevPorts &) { EXPECT_TRUE(list()); }));
    quiesce();
    EXPECT_EQ(lists.size(), 1u);
}

TEST_F(ShortcutQueueTest, anAnswerMayEndTheQueue) {
    ASSERT_TRUE(queue->list([this](const DevPorts &) { queue.reset(); }));
    quiesce();
    EXPECT_EQ(queue, nullptr);
}

} // namespace
} // namespace tarnvale
