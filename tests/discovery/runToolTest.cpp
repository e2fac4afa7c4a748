#include "discovery/runTool.h"

#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/sysinfo.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::Ge;
using testing::Le;
using testing::StartsWith;

/// Long enough for any tool here that ends by itself.
constexpr milliseconds ample = 30s;
constexpr milliseconds shortTime = 250ms;

/// What a busy machine may add to the second that a call may last beyond its time-out.
constexpr milliseconds slack = 1s;

std::size_t openDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

/// Another disposition of a signal for as long as it lives.
class SignalDisposition {
public:
    SignalDisposition(int number, void (*handler)(int)) : m_number(number) {
        struct sigaction action {};
        action.sa_handler = handler;
        sigaction(number, &action, &m_before);
    }
    SignalDisposition(const SignalDisposition &) = delete;
    SignalDisposition &operator=(const SignalDisposition &) = delete;
    ~SignalDisposition() { sigaction(m_number, &m_before, nullptr); }

private:
    int m_number;
    struct sigaction m_before {};
};

class RunToolTest : public testing::Test {
protected:
    ~RunToolTest() override { killMarked(m_left, m_folder.path()); }

    std::string script(const std::string &body) { return m_folder.writeScript("tool", body); }

    std::string run(const std::string &body, milliseconds timeout, bool merges = false) {
        const std::string tool = script(body);
        const auto start = std::chrono::steady_clock::now();
        std::string output = runTool(tool, {}, merges, timeout);
        m_elapsed = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
        return output;
    }

    /// The shell text that notes the tool's own pid, so that it can be found later.
    [[nodiscard]] std::string notePid() const { return "echo $$ > " + m_folder.path("pid") + "\n"; }

    /// The pid that the tool noted. It is killed when the test ends.
    Pid notedPid() { return m_left = awaitPid(m_folder.path("pid")); }

    TemporaryFolder m_folder;
    milliseconds m_elapsed{};
    Pid m_left = -1;
};

const std::string endless = "while :; do sleep 0.05; done";

TEST_F(RunToolTest, standardOutputIsReturnedAndErrorDiscarded) {
    EXPECT_EQ(run("echo out; echo error >&2; echo more", ample), "out\nmore\n");
}

TEST_F(RunToolTest, standardErrorIsMergedInOrder) {
    EXPECT_EQ(run("echo out; echo error >&2; echo more", ample, true), "out\nerror\nmore\n");
}

TEST_F(RunToolTest, theExitStatusPlaysNoPart) {
    EXPECT_EQ(run("echo partial; exit 3", ample), "partial\n");
    EXPECT_EQ(run("echo partial; kill -9 $$", ample), "partial\n");
}

TEST_F(RunToolTest, whatCannotBeStartedGivesNothing) {
    const std::string plain = m_folder.write("plain", "echo no");
    const std::string nonsense = m_folder.write("nonsense", "\x7F not a program");
    std::filesystem::permissions(nonsense, std::filesystem::perms::owner_all);
    for (const std::string &path :
         {std::string(), m_folder.path("missing"), m_folder.path(), plain, nonsense, std::string("sh")})
        EXPECT_EQ(runTool(path, {}, true, ample), "") << path;
}

TEST_F(RunToolTest, argumentsArriveToTheLetter) {
    EXPECT_EQ(
        runTool(script("printf '[%s]' \"$@\""), {"a b", "", "$HOME", "*", "'\"", "x\ny", "-e"}, false, ample),
        "[a b][][$HOME][*]['\"][x\ny][-e]");
}

TEST_F(RunToolTest, theToolsOwnNameIsItsPath) {
    EXPECT_EQ(run("printf %s \"$0\"", ample), m_folder.path("tool"));
}

TEST_F(RunToolTest, thereIsNoInput) {
    EXPECT_EQ(run("cat; echo done", ample), "done\n");
}

TEST_F(RunToolTest, theEnvironmentIsInherited) {
    setenv("TARNVALE_TEST_VALUE", "two words", 1);
    EXPECT_EQ(run("echo \"$TARNVALE_TEST_VALUE\"", ample), "two words\n");
    unsetenv("TARNVALE_TEST_VALUE");
}

TEST_F(RunToolTest, invalidUtf8IsRepaired) {
    EXPECT_EQ(run("printf 'a\\377b\\303'", ample), "a\uFFFDb\uFFFD");
}

TEST_F(RunToolTest, aCharacterSplitBetweenTwoWritesIsWhole) {
    EXPECT_EQ(run("printf '\\303'; sleep 0.05; printf '\\274'", ample), "\u00FC");
}

TEST_F(RunToolTest, muchOutputArrivesWhole) {
    constexpr std::size_t size = 50u << 20;
    EXPECT_TRUE(run("exec head -c " + std::to_string(size) + " /dev/zero", ample) == std::string(size, '\0'));
}

TEST_F(RunToolTest, outputBeyondTheLimitIsReadAndDropped) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer makes it take most of a minute";
#endif
    struct sysinfo info {};
    ASSERT_EQ(sysinfo(&info), 0);
    if (info.freeram * info.mem_unit < 3ull << 30)
        GTEST_SKIP() << "less than 3 GiB of memory are free";
    EXPECT_EQ(run("head -c 300M /dev/zero; echo done > " + m_folder.path("done"), ample).size(), 256u << 20);
    EXPECT_EQ(readFile(m_folder.path("done")), "done\n") << "the tool wasn't stopped";
}

TEST_F(RunToolTest, aToolThatOverrunsIsEndedAndWhatArrivedCounts) {
    EXPECT_EQ(run(notePid() + "printf 'one\\ntwo'; exec sleep 60", shortTime), "one\ntwo");
    EXPECT_THAT(m_elapsed, AllOf(Ge(shortTime), Le(shortTime + 1s + slack)));
    EXPECT_FALSE(isAlive(notedPid()));
}

TEST_F(RunToolTest, lastWordsAfterTheTimeOutCount) {
    EXPECT_EQ(run("trap 'echo last; exit' TERM; echo first; " + endless, shortTime), "first\nlast\n");
    EXPECT_LE(m_elapsed, shortTime + 1s + slack);
}

TEST_F(RunToolTest, aToolThatNeverStopsWritingIsEnded) {
    EXPECT_THAT(run(notePid() + "exec yes", shortTime), StartsWith("y\ny\n"));
    EXPECT_LE(m_elapsed, shortTime + 1s + slack);
    EXPECT_FALSE(isAlive(notedPid()));
}

TEST_F(RunToolTest, aToolThatIgnoresTheSignalIsLeftRunning) {
    EXPECT_EQ(run("trap '' TERM\n" + notePid() + "echo ready; " + endless, shortTime), "ready\n");
    EXPECT_LE(m_elapsed, shortTime + 1s + slack);
    EXPECT_TRUE(isAlive(notedPid()));
    killMarked(m_left, m_folder.path());
    EXPECT_TRUE(eventually([&] { return !std::filesystem::exists("/proc/" + std::to_string(m_left)); }))
        << "it is reaped when it ends at last";
}

TEST_F(RunToolTest, theNextWriteEndsAToolThatWasLeftRunning) {
    // Our own disposition must not reach the tool.
    const SignalDisposition ignored(SIGPIPE, SIG_IGN);
    run("trap '' TERM\n" + notePid() + "while :; do echo x; sleep 0.05; done", shortTime);
    const Pid pid = notedPid();
    EXPECT_TRUE(eventually([&] { return !isAlive(pid); }));
}

TEST_F(RunToolTest, aChildThatHoldsTheOutputOpenIsLeftAlone) {
    const std::string holder = m_folder.writeScript("holder", "echo $$ > " + m_folder.path("pid") +
                                                                  "\nwhile :; do sleep 0.05; done");
    EXPECT_EQ(run("echo early; " + holder + " & exit 0", shortTime), "early\n");
    EXPECT_THAT(m_elapsed, AllOf(Ge(shortTime), Le(shortTime + 1s + slack)));
    EXPECT_TRUE(isAlive(notedPid()));
}

TEST_F(RunToolTest, aToolThatClosesItsOutputIsWaitedForUntilTheTimeOut) {
    EXPECT_EQ(run(notePid() + "echo early; exec sleep 60 >&- 2>&-", shortTime), "early\n");
    EXPECT_THAT(m_elapsed, AllOf(Ge(shortTime), Le(shortTime + 1s + slack)));
    EXPECT_FALSE(isAlive(notedPid()));
}

TEST_F(RunToolTest, aToolThatClosesItsOutputMayFinish) {
    EXPECT_EQ(run("echo early; exec >&- 2>&-; sleep 0.1; : > " + m_folder.path("done"), ample), "early\n");
    EXPECT_TRUE(std::filesystem::exists(m_folder.path("done")));
}

TEST_F(RunToolTest, noTimeAtAllStillReturns) {
    static_cast<void>(run("exec sleep 60", 0ms));
    EXPECT_LE(m_elapsed, 1s + slack);
    static_cast<void>(run("exec sleep 60", -5s));
    EXPECT_LE(m_elapsed, 1s + slack);
}

TEST_F(RunToolTest, aBlockedSignalIsNotBlockedInTheTool) {
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    sigset_t before;
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &term, &before), 0);
    run(notePid() + "exec sleep 60", shortTime);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_FALSE(isAlive(notedPid()));
}

TEST_F(RunToolTest, ignoredEndsOfChildrenDoNotHangTheCaller) {
    const SignalDisposition ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("echo out", ample), "out\n");
    EXPECT_LE(m_elapsed, 10s);
    EXPECT_EQ(run(notePid() + "echo out; exec sleep 60", shortTime), "out\n");
    EXPECT_LE(m_elapsed, shortTime + 1s + slack);
    EXPECT_FALSE(isAlive(notedPid()));
}

TEST_F(RunToolTest, interruptionsLoseNothing) {
    const SignalDisposition handled(SIGALRM, [](int) {});
    const itimerval often{.it_interval = {0, 5000}, .it_value = {0, 5000}};
    const itimerval never{};
    setitimer(ITIMER_REAL, &often, nullptr);
    const std::string output = run("for i in 1 2 3 4 5; do echo $i; sleep 0.03; done", ample);
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(output, "1\n2\n3\n4\n5\n");
}

TEST_F(RunToolTest, theCallersClosedStreamsDoNotMatter) {
    std::array<int, 3> saved{};
    for (int fd = 0; fd < 3; ++fd) {
        saved.at(static_cast<std::size_t>(fd)) = fcntl(fd, F_DUPFD_CLOEXEC, 10);
        close(fd);
    }
    const std::string plain = run("cat; echo out; echo error >&2", ample);
    const std::string merged = run("echo out; echo error >&2", ample, true);
    for (int fd = 0; fd < 3; ++fd) {
        dup2(saved.at(static_cast<std::size_t>(fd)), fd);
        close(saved.at(static_cast<std::size_t>(fd)));
    }
    EXPECT_EQ(plain, "out\n");
    EXPECT_EQ(merged, "out\nerror\n");
}

TEST_F(RunToolTest, theToolGetsNeitherTheReadingEndNorACopyOfTheOther) {
    EXPECT_EQ(run("out=$(readlink /proc/$$/fd/1)\n"
                  "for fd in /proc/$$/fd/*; do [ \"$(readlink $fd)\" = \"$out\" ] && echo ${fd##*/}; done",
                  ample),
              "1\n");
}

TEST_F(RunToolTest, manyRunsLeaveNoZombieAndNoDescriptor) {
    const std::string quick = m_folder.writeScript("quick", "echo out");
    const std::string slow = m_folder.writeScript("slow", "exec sleep 60");
    static_cast<void>(runTool(quick, {}, false, ample));
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(runTool(quick, {}, i % 2 == 0, ample), "out\n");
        EXPECT_EQ(runTool(slow, {}, false, 5ms), "");
        EXPECT_EQ(runTool(m_folder.path("missing"), {}, false, ample), "");
        EXPECT_TRUE(runOpener(quick, {}, ample));
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(RunToolTest, toolsOfSeveralThreadsDoNotHoldEachOtherUp) {
    const std::string quick = m_folder.writeScript("quick", "echo $1");
    const std::string slow = m_folder.writeScript("slow", "exec sleep 60");
    std::thread other([&] {
        for (int i = 0; i < 3; ++i)
            static_cast<void>(runTool(slow, {}, false, shortTime));
    });
    std::array<std::string, 2> outputs;
    {
        std::array<std::thread, 2> threads;
        for (std::size_t i = 0; i < threads.size(); ++i)
            threads.at(i) = std::thread([&, i] {
                for (int run = 0; run < 10; ++run)
                    outputs.at(i) += runTool(quick, {std::to_string(i)}, false, ample);
            });
        for (std::thread &thread : threads)
            thread.join();
    }
    other.join();
    EXPECT_EQ(outputs[0], "0\n0\n0\n0\n0\n0\n0\n0\n0\n0\n");
    EXPECT_EQ(outputs[1], "1\n1\n1\n1\n1\n1\n1\n1\n1\n1\n");
}

class RunOpenerTest : public RunToolTest {};

TEST_F(RunOpenerTest, itReturnsWhenTheOpenerEnds) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(runOpener(script("printf '[%s]' \"$@\" > " + m_folder.path("asked")),
                          {"http://localhost:80", ""}, ample));
    EXPECT_LE(std::chrono::steady_clock::now() - start, 10s);
    EXPECT_EQ(readFile(m_folder.path("asked")), "[http://localhost:80][]");
}

TEST_F(RunOpenerTest, anOpenerThatFailsWasStartedAllTheSame) {
    EXPECT_TRUE(runOpener(script("exit 4"), {}, ample));
}

TEST_F(RunOpenerTest, whatCannotBeStartedIsTold) {
    EXPECT_FALSE(runOpener(m_folder.path("missing"), {}, ample));
    EXPECT_FALSE(runOpener(m_folder.path(), {}, ample));
}

TEST_F(RunOpenerTest, itIsNeverSignalled) {
    const std::string signalled = m_folder.path("signalled");
    const std::string opener = script("trap ': > " + signalled + "' TERM HUP INT\n" + notePid() + endless);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(runOpener(opener, {}, shortTime));
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, shortTime);
    EXPECT_LE(elapsed, shortTime + 1s + slack);
    EXPECT_TRUE(isAlive(notedPid()));
    EXPECT_FALSE(std::filesystem::exists(signalled));
}

TEST_F(RunOpenerTest, itHasASessionOfItsOwnAndNoStreams) {
    const std::string opener = script("streams=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2)\n"
                                      "echo \"$streams\" > " +
                                      m_folder.path("streams") + "\n" + notePid() + endless);
    EXPECT_TRUE(runOpener(opener, {}, shortTime));
    const Pid pid = notedPid();
    EXPECT_EQ(getsid(pid), pid);
    EXPECT_EQ(readFile(m_folder.path("streams")), "/dev/null\n/dev/null\n/dev/null\n");
}

TEST_F(RunOpenerTest, ignoredEndsOfChildrenDoNotHangTheCaller) {
    const SignalDisposition ignored(SIGCHLD, SIG_IGN);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(runOpener(script("exit 0"), {}, ample));
    EXPECT_LE(std::chrono::steady_clock::now() - start, 10s);
}

} // namespace
} // namespace tarnvale
