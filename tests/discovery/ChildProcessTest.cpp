#include "discovery/ChildProcess.h"

#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>
#include <utility>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ChildProcessTest : public testing::Test {
protected:
    ~ChildProcessTest() override { killMarked(m_pid, m_folder.path()); }

    /// Starts a script that writes its pid and then does what `body` says, and waits for the pid.
    ChildProcess startScript(const std::string &body, const ChildProcess::Setup &setup = {}) {
        const std::string script =
            m_folder.writeScript("tool", "echo $$ > " + m_folder.path("pid") + "\n" + body);
        ChildProcess child = ChildProcess::start(script, {}, setup);
        m_pid = awaitPid(m_folder.path("pid"));
        return child;
    }

    TemporaryFolder m_folder;
    Pid m_pid = -1;
};

const std::string endless = "while :; do sleep 0.05; done";

TEST_F(ChildProcessTest, aMissingProgramIsNotStarted) {
    ChildProcess child = ChildProcess::start(m_folder.path("missing"), {}, {});
    EXPECT_FALSE(child.isStarted());
    EXPECT_TRUE(child.waitUntil(Clock::now() + 10s)) << "there is nothing to wait for";
    child.terminate();
}

TEST_F(ChildProcessTest, waitingTellsWhetherTheEndCame) {
    ChildProcess child = startScript("while [ ! -e " + m_folder.path("go") + " ]; do sleep 0.02; done");
    EXPECT_TRUE(child.isStarted());
    EXPECT_FALSE(child.waitUntil(Clock::now() + 50ms));
    m_folder.write("go", "");
    EXPECT_TRUE(child.waitUntil(Clock::now() + 10s));
    EXPECT_TRUE(child.isStarted()) << "a child that has ended was started all the same";
    EXPECT_TRUE(child.waitUntil(Clock::now()));
    EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(m_pid))) << "it is reaped";
}

TEST_F(ChildProcessTest, anEndBeforeAPastDeadlineIsSeen) {
    ChildProcess child = startScript("exit 0");
    EXPECT_TRUE(eventually([&] { return !isAlive(m_pid); }));
    EXPECT_TRUE(child.waitUntil(Clock::now() - 1s));
}

TEST_F(ChildProcessTest, terminatingEndsIt) {
    ChildProcess child = startScript(endless);
    child.terminate();
    EXPECT_TRUE(child.waitUntil(Clock::now() + 10s));
    child.terminate();
}

TEST_F(ChildProcessTest, aChildThatStillRunsIsLeftRunningAndReapedLater) {
    { const ChildProcess child = startScript(endless); }
    EXPECT_TRUE(isAlive(m_pid));
    killMarked(m_pid, m_folder.path());
    EXPECT_TRUE(eventually([&] { return !std::filesystem::exists("/proc/" + std::to_string(m_pid)); }));
}

TEST_F(ChildProcessTest, aMovedChildIsWaitedForOnce) {
    ChildProcess first = startScript(endless);
    ChildProcess second(std::move(first));
    EXPECT_FALSE(first.isStarted()); // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_TRUE(second.isStarted());
    first.terminate();
    EXPECT_FALSE(second.waitUntil(Clock::now() + 30ms));
    second.terminate();
    EXPECT_TRUE(second.waitUntil(Clock::now() + 10s));
}

TEST_F(ChildProcessTest, onlyANewSessionIsApartFromOurs) {
    ChildProcess child = startScript(endless);
    EXPECT_EQ(getsid(m_pid), getsid(0));
    child.terminate();
    EXPECT_TRUE(child.waitUntil(Clock::now() + 10s));

    m_folder.write("pid", "");
    ChildProcess leader = startScript(endless, {.newSession = true});
    EXPECT_EQ(getsid(m_pid), m_pid);
    leader.terminate();
    EXPECT_TRUE(leader.waitUntil(Clock::now() + 10s));
}

} // namespace
} // namespace tarnvale
