#include "platform/process/ProcessHandle.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <linux/sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

[[noreturn]] void waitToBeKilled() {
    for (;;)
        pause();
}

/// A child that waits to be killed, reaped at the end.
class Child {
public:
    Child() : m_pid(fork()) {
        if (m_pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            waitToBeKilled();
        }
    }
    /// Takes care of a child that was made otherwise.
    explicit Child(pid_t pid) : m_pid(pid) {}
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child() { end(); }

    [[nodiscard]] Pid pid() const { return m_pid; }
    [[nodiscard]] bool isRunning() const {
        siginfo_t info{};
        return waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == 0;
    }

    /// Waits until it is a zombie; the signal that ended it, or 0.
    [[nodiscard]] int waitForZombie() const {
        siginfo_t info{};
        waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOWAIT);
        return info.si_code == CLD_KILLED ? info.si_status : 0;
    }

    /// Ends it and gives its pid free.
    void end() {
        if (m_pid <= 0)
            return;
        kill(m_pid, SIGKILL);
        while (waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR)
            ;
        m_pid = -1;
    }

private:
    pid_t m_pid;
};

/// A new child with just this pid, which must be free; -1 with `errno` where that isn't allowed.
pid_t forkWithPid(pid_t wanted) {
    clone_args args{};
    args.exit_signal = SIGCHLD;
    args.set_tid = reinterpret_cast<std::uint64_t>(&wanted);
    args.set_tid_size = 1;
    const long pid = syscall(SYS_clone3, &args, sizeof args);
    if (pid == 0)
        waitToBeKilled();
    return static_cast<pid_t>(pid);
}

TEST(ProcessHandleTest, aSignalReachesTheProcess) {
    const Child child;
    const ProcessHandle handle(child.pid());
    EXPECT_EQ(handle.signal(0), 0);
    EXPECT_TRUE(child.isRunning()) << "asking sends nothing";
    EXPECT_EQ(handle.signal(SIGTERM), 0);
    EXPECT_EQ(child.waitForZombie(), SIGTERM);
}

TEST(ProcessHandleTest, aProcessThatHasEndedIsNotThere) {
    Child child;
    const pid_t pid = child.pid();
    const ProcessHandle before(pid);
    child.end();
    EXPECT_EQ(before.signal(SIGTERM), ESRCH);
    EXPECT_EQ(before.signal(0), ESRCH);
    EXPECT_TRUE(before.waitForEnd(0ms));
    const ProcessHandle after(pid);
    EXPECT_EQ(after.signal(SIGTERM), ESRCH);
    EXPECT_TRUE(after.waitForEnd(0ms));
}

TEST(ProcessHandleTest, whatMustNeverBeSignalledIsRefused) {
    // A signal to 0 or a negative number would reach whole groups.
    for (const Pid pid : {0, -1, -2, 1, -2147483647 - 1, Pid{getpid()}}) {
        const ProcessHandle handle(pid);
        EXPECT_EQ(handle.signal(0), EPERM) << pid;
        EXPECT_EQ(handle.signal(SIGKILL), EPERM) << pid;
        EXPECT_FALSE(handle.waitForEnd(1ms)) << pid;
    }
}

TEST(ProcessHandleTest, aPidThatNobodyHasIsNotThere) {
    const ProcessHandle handle(2147483647);
    EXPECT_EQ(handle.signal(SIGKILL), ESRCH);
    EXPECT_TRUE(handle.waitForEnd(0ms));
}

TEST(ProcessHandleTest, aSignalThatDoesNotExistIsInvalid) {
    const Child child;
    EXPECT_EQ(ProcessHandle(child.pid()).signal(4711), EINVAL);
    EXPECT_EQ(ProcessHandle(child.pid()).signal(-1), EINVAL);
    EXPECT_TRUE(child.isRunning());
}

TEST(ProcessHandleTest, aThreadIsNoProcess) {
    // A number that has passed from a process to another one's thread must not lead to that one.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const Child child(fork());
    if (child.pid() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::thread([&] {
            const pid_t own = static_cast<pid_t>(syscall(SYS_gettid));
            static_cast<void>(!write(ends[1], &own, sizeof own));
            waitToBeKilled();
        }).detach();
        waitToBeKilled();
    }
    pid_t number = 0;
    ASSERT_EQ(read(ends[0], &number, sizeof number), static_cast<ssize_t>(sizeof number));
    close(ends[0]);
    close(ends[1]);
    ASSERT_NE(number, child.pid());
    EXPECT_EQ(ProcessHandle(number).signal(SIGTERM), ESRCH);
    EXPECT_TRUE(child.isRunning());
}

TEST(ProcessHandleTest, aProcessThatWasGivenTheNumberLaterIsLeftAlone) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        Child first;
        const pid_t number = first.pid();
        const ProcessHandle handle(number);
        ASSERT_EQ(handle.signal(0), 0);
        first.end();
        const Child second(forkWithPid(number));
        if (second.pid() < 0 && errno == EEXIST)
            continue; // somebody else was faster
        if (second.pid() < 0)
            GTEST_SKIP() << "can't choose a pid: " << strerror(errno);
        ASSERT_EQ(second.pid(), number);
        EXPECT_EQ(handle.signal(0), ESRCH);
        EXPECT_EQ(handle.signal(SIGKILL), ESRCH);
        EXPECT_TRUE(handle.waitForEnd(0ms)) << "what it was opened on has ended";
        EXPECT_TRUE(second.isRunning());
        EXPECT_EQ(ProcessHandle(number).signal(0), 0) << "a new handle means the new process";
        return;
    }
    GTEST_SKIP() << "the pid was taken each time";
}

TEST(ProcessHandleTest, aSignalToAZombieSaysNothing) {
    const Child child;
    const ProcessHandle handle(child.pid());
    kill(child.pid(), SIGKILL);
    ASSERT_EQ(child.waitForZombie(), SIGKILL);
    EXPECT_TRUE(handle.waitForEnd(0ms)) << "a zombie has ended";
    // The kernel takes a signal for it or says that it is gone; nothing else may come back.
    const int result = handle.signal(SIGTERM);
    EXPECT_TRUE(result == 0 || result == ESRCH) << strerror(result);
}

TEST(ProcessHandleTest, waitingEndsWithTheTime) {
    const Child child;
    const ProcessHandle handle(child.pid());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(handle.waitForEnd(0ms));
    EXPECT_FALSE(handle.waitForEnd(-5ms));
    EXPECT_FALSE(handle.waitForEnd(50ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
    EXPECT_TRUE(child.isRunning());
}

TEST(ProcessHandleTest, waitingEndsWithTheProcess) {
    const Child child;
    const ProcessHandle handle(child.pid());
    std::jthread ender([&] { kill(child.pid(), SIGKILL); });
    EXPECT_TRUE(handle.waitForEnd(1h));
}

TEST(ProcessHandleTest, theEndOfSomebodyElsesChildIsSeen) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    Child parent(fork());
    if (parent.pid() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const pid_t inner = fork();
        if (inner == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            waitToBeKilled();
        }
        static_cast<void>(!write(ends[1], &inner, sizeof inner));
        // Never reaped: it stays a zombie.
        waitToBeKilled();
    }
    pid_t grandchild = 0;
    ASSERT_EQ(read(ends[0], &grandchild, sizeof grandchild), static_cast<ssize_t>(sizeof grandchild));
    close(ends[0]);
    close(ends[1]);
    const ProcessHandle handle(grandchild);
    EXPECT_FALSE(handle.waitForEnd(10ms));
    EXPECT_EQ(handle.signal(SIGTERM), 0);
    EXPECT_TRUE(handle.waitForEnd(1h));
}

TEST(ProcessHandleTest, aProcessEndsWithItsLastThread) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const Child child(fork());
    if (child.pid() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::thread([&] {
            static_cast<void>(!write(ends[1], "t", 1));
            waitToBeKilled();
        }).detach();
        syscall(SYS_exit, 0); // this thread alone
    }
    char byte = 0;
    ASSERT_EQ(read(ends[0], &byte, 1), 1);
    close(ends[0]);
    close(ends[1]);
    const ProcessHandle handle(child.pid());
    EXPECT_FALSE(handle.waitForEnd(20ms)) << "the other thread lives";
    EXPECT_EQ(handle.signal(SIGTERM), 0);
    EXPECT_TRUE(handle.waitForEnd(1h));
}

TEST(ProcessHandleTest, anotherUsersProcessMayNotBeSignalled) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root, to become another user";
    const Child victim;
    const Child other(fork());
    if (other.pid() == 0) {
        if (setresgid(65534, 65534, 65534) != 0 || setresuid(65534, 65534, 65534) != 0)
            _exit(99);
        _exit(ProcessHandle(victim.pid()).signal(SIGTERM));
    }
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(other.pid()), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(info.si_status, EPERM);
    EXPECT_TRUE(victim.isRunning());
}

TEST(ProcessHandleTest, aHandleCanBeMoved) {
    const Child child;
    ProcessHandle first(child.pid());
    const ProcessHandle second(std::move(first));
    EXPECT_EQ(second.signal(SIGTERM), 0);
    EXPECT_TRUE(second.waitForEnd(1h));
}

} // namespace
} // namespace tarnvale
