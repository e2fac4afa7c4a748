// How the helper program begins and ends.

#include "preview-renderer/PreviewTest.h"
#include "support/ManualClock.h"
#include "support/runProgram.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>
#include <sysexits.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class HelperEnd : public PreviewTest {
protected:
    /// Begins a capture that goes on for as long as the test wants.
    QFuture<std::optional<QByteArray>> captureWithoutEnd() {
        auto hanging = capturer->capture(server.port());
        EXPECT_TRUE(waitFor([this] { return !server.asked.empty(); }));
        return hanging;
    }
    void expectNoPicture(const QFuture<std::optional<QByteArray>> &capture) {
        ASSERT_TRUE(waitFor([&] { return capture.isFinished(); }));
        EXPECT_EQ(capture.result(), std::nullopt);
    }
};

TEST_F(HelperEnd, killedInMidCaptureItCostsOnePicture) {
    const auto hanging = captureWithoutEnd();
    const Pid helper = capturer->helper().value();
    kill(helper, SIGKILL);
    expectNoPicture(hanging);
    EXPECT_TRUE(waitFor([&] { return groupSize(helper) == 0; })) << "what it started ends with it";
    EXPECT_EQ(colourOf(capturePage(coloured(green))), green);
}

TEST_F(HelperEnd, hangingItCostsOnePicture) {
    setOptions({.patience = 2s});
    EXPECT_EQ(colourOf(capturePage(coloured(blue))), blue);
    const Pid helper = capturer->helper().value();
    kill(helper, SIGSTOP);
    EXPECT_TRUE(capture(server.port()).isNull());
    EXPECT_TRUE(waitFor([&] { return groupSize(helper) == 0; }));
    setOptions({});
    EXPECT_EQ(colourOf(capture(server.port())), blue);
}

TEST_F(HelperEnd, withoutWorkNothingIsLeft) {
    setOptions({.idleTime = 100ms});
    EXPECT_EQ(colourOf(capturePage(coloured(blue))), blue);
    const Pid helper = capturer->helper().value();
    EXPECT_GT(groupSize(helper), 1);
    EXPECT_TRUE(waitFor([&] { return !capturer->helper(); }));
    EXPECT_TRUE(waitFor([&] { return groupSize(helper) == 0; }));
    EXPECT_EQ(colourOf(capture(server.port())), blue);
}

TEST_F(HelperEnd, withTheCapturerNothingIsLeft) {
    const auto hanging = captureWithoutEnd();
    const Pid helper = capturer->helper().value();
    setOptions({});
    expectNoPicture(hanging);
    EXPECT_TRUE(waitFor([&] { return groupSize(helper) == 0; }));
}

TEST_F(HelperEnd, itLeavesWhenItsInputEnds) {
    const ProgramRun run = runProgram({helperPath()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, std::string(4, '\0')) << "it was ready";
}

TEST_F(HelperEnd, withoutASandboxItDoesNotRun) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root has none";
    unsetenv("TARNVALE_PREVIEW_SANDBOX");
    const ProgramRun run = runProgram({helperPath()});
    EXPECT_EQ(run.status, EX_NOPERM);
    EXPECT_EQ(run.output, "");
}

TEST_F(HelperEnd, itYieldsToOthers) {
    EXPECT_EQ(colourOf(capturePage(coloured(blue))), blue);
    const Pid helper = capturer->helper().value();
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(helper)), 10);
    EXPECT_EQ(readFile("/proc/" + std::to_string(helper) + "/oom_score_adj"), "1000\n");
}

} // namespace
} // namespace tarnvale
