#include "preview-renderer/PageLoad.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class PageLoadTest : public testing::Test {
protected:
    ~PageLoadTest() override { clock.wakeAll(); }

    /// Nothing while the wait goes on.
    static std::optional<bool> outcome(const QFuture<bool> &loading) {
        return loading.isFinished() ? std::optional(loading.result()) : std::nullopt;
    }

    ManualClock clock;
    std::unique_ptr<PageLoad> load = std::make_unique<PageLoad>(clock);
};

TEST_F(PageLoadTest, aPageFinishesOrFails) {
    const auto first = load->begin();
    EXPECT_EQ(outcome(first), std::nullopt);
    load->finish(true);
    EXPECT_EQ(outcome(first), true);
    const auto second = load->begin();
    load->finish(false);
    EXPECT_EQ(outcome(second), false);
}

TEST_F(PageLoadTest, aPageThatTakesNineSecondsFinishes) {
    const auto loading = load->begin();
    clock.advance(1s);
    load->respond();
    clock.advance(8s);
    load->finish(true);
    EXPECT_EQ(outcome(loading), true);
    clock.advance(1min);
    EXPECT_EQ(outcome(loading), true) << "the later timer finds nobody who waits";
}

TEST_F(PageLoadTest, aPageThatTakesTenSecondsIsGivenUp) {
    const auto loading = load->begin();
    load->respond();
    clock.advance(9'999ms);
    EXPECT_EQ(outcome(loading), std::nullopt);
    clock.advance(1ms);
    EXPECT_EQ(outcome(loading), false);
    load->finish(true);
    EXPECT_EQ(outcome(loading), false) << "later calls do nothing";
}

TEST_F(PageLoadTest, aServerThatSaysNothingIsGivenUpEarlier) {
    const auto loading = load->begin();
    clock.advance(7'999ms);
    EXPECT_EQ(outcome(loading), std::nullopt);
    clock.advance(1ms);
    EXPECT_EQ(outcome(loading), false);
}

TEST_F(PageLoadTest, aSecondLoadIsNotEndedByTheTimersOfTheFirst) {
    const auto first = load->begin();
    clock.advance(8s);
    EXPECT_EQ(outcome(first), false);
    const auto second = load->begin();
    clock.advance(2s);
    EXPECT_EQ(outcome(second), std::nullopt) << "the first one's ten seconds are over";
    load->respond();
    clock.advance(7s);
    EXPECT_EQ(outcome(second), std::nullopt);
    load->finish(true);
    EXPECT_EQ(outcome(second), true);
}

TEST_F(PageLoadTest, anAnswerCountsForItsOwnLoadAlone) {
    const auto first = load->begin();
    load->respond();
    load->finish(true);
    const auto second = load->begin();
    clock.advance(8s);
    EXPECT_EQ(outcome(first), true);
    EXPECT_EQ(outcome(second), false);
}

TEST_F(PageLoadTest, aNewLoadEndsTheOneBefore) {
    const auto first = load->begin();
    const auto second = load->begin();
    EXPECT_EQ(outcome(first), false);
    EXPECT_EQ(outcome(second), std::nullopt);
    load->finish(true);
    EXPECT_EQ(outcome(second), true);
}

TEST_F(PageLoadTest, whatFinishesUnaskedIsNothing) {
    load->finish(true);
    const auto loading = load->begin();
    EXPECT_EQ(outcome(loading), std::nullopt);
}

TEST_F(PageLoadTest, itsEndEndsTheWait) {
    const auto loading = load->begin();
    load.reset();
    EXPECT_EQ(outcome(loading), false);
    clock.advance(1min);
}

} // namespace
} // namespace tarnvale
