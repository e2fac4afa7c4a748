#include "app/QuitSignals.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvale {
namespace {

constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};

/// What the process does at a signal.
auto handlerOf(int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
}

/// Puts back afterwards what the machine around the test had set.
class QuitSignalsTest : public testing::Test {
protected:
    QuitSignalsTest() {
        for (std::size_t each = 0; each < signals.size(); ++each) {
            struct sigaction standard {};
            standard.sa_handler = SIG_DFL;
            sigaction(signals[each], &standard, &m_before[each]);
        }
    }
    ~QuitSignalsTest() override {
        for (std::size_t each = 0; each < signals.size(); ++each)
            sigaction(signals[each], &m_before[each], nullptr);
    }

private:
    std::array<struct sigaction, signals.size()> m_before{};
};

TEST_F(QuitSignalsTest, eachSignalAsksTheProgramToQuit) {
    int quits = 0;
    const QuitSignals watched([&quits] { ++quits; });
    int expected = 0;
    for (const int number : signals) {
        ASSERT_EQ(raise(number), 0);
        EXPECT_EQ(quits, expected) << "not in the handler itself";
        ++expected;
        EXPECT_TRUE(waitFor([&] { return quits == expected; })) << strsignal(number);
    }
}

TEST_F(QuitSignalsTest, signalsThatComeTogetherAreOneCall) {
    int quits = 0;
    const QuitSignals watched([&quits] { ++quits; });
    for (int times = 0; times < 100; ++times)
        for (const int number : signals)
            raise(number);
    EXPECT_TRUE(waitFor([&quits] { return quits > 0; }));
    settle();
    EXPECT_LT(quits, 300);
}

TEST_F(QuitSignalsTest, aFloodOfSignalsNeverBlocks) {
    int quits = 0;
    const QuitSignals watched([&quits] { ++quits; });
    for (int times = 0; times < 10'000; ++times)
        raise(SIGHUP);
    EXPECT_TRUE(waitFor([&quits] { return quits > 0; }));
}

TEST_F(QuitSignalsTest, aHandlerLeavesTheErrorNumberAlone) {
    const QuitSignals watched([] {});
    errno = ENOENT;
    raise(SIGTERM);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(QuitSignalsTest, afterwardsTheSignalsDoWhatTheyDidBefore) {
    signal(SIGHUP, SIG_IGN); // as under nohup
    {
        const QuitSignals watched([] {});
        for (const int number : signals) {
            EXPECT_NE(handlerOf(number), SIG_DFL);
            EXPECT_NE(handlerOf(number), SIG_IGN);
        }
    }
    EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
    EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
    EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
}

TEST_F(QuitSignalsTest, oneCanFollowAnother) {
    int quits = 0;
    for (int round = 1; round <= 2; ++round) {
        const QuitSignals watched([&quits] { ++quits; });
        raise(SIGINT);
        EXPECT_TRUE(waitFor([&] { return quits == round; }));
    }
}

TEST_F(QuitSignalsTest, aChildProcessDiesOfTheSignalAfterAll) {
    const pid_t child = fork();
    if (child == 0) {
        {
            const QuitSignals watched([] {});
        }
        raise(SIGTERM);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

} // namespace
} // namespace tarnvale
