#include "platform/linux/SpawnedProcess.h"

#include "discovery/text.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/wait.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Means = ChildWatch::Means;

/// A file for a program to write to.
class SpawnTest : public testing::Test {
protected:
    SpawnTest() : m_file(open(m_folder.path("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)) {}

    /// Runs `script` with the file as its output and returns what it wrote.
    std::string outputOf(const std::string &script, SpawnOrder order = {}) const {
        order.path = "/bin/sh";
        order.arguments = {"-c", script};
        order.descriptors[STDOUT_FILENO] = m_file.get();
        const auto pid = spawn(order);
        EXPECT_TRUE(pid);
        EXPECT_EQ(waitpid(pid.value_or(-1), nullptr, 0), pid.value_or(-1));
        return readFile(m_folder.path("out"));
    }

    TemporaryFolder m_folder;
    FileDescriptor m_file;
};

TEST_F(SpawnTest, theProgramWorksInTheFolder) {
    const FileDescriptor folder(open(m_folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    EXPECT_EQ(outputOf("pwd -P", {.folder = folder.get()}),
              std::filesystem::canonical(m_folder.path()).string() + "\n");
}

TEST_F(SpawnTest, theEnvironmentIsTheGivenOneAlone) {
    const std::map<std::string, std::string> environment{
        {"A", "1 2"}, {"EMPTY", ""}, {"", "no name"}, {"B=C", "an equals sign in the name"}};
    SpawnOrder order{.path = "/usr/bin/env", .descriptors = {{1, m_file.get()}}, .environment = environment};
    const auto pid = spawn(order);
    ASSERT_TRUE(pid);
    ASSERT_EQ(waitpid(*pid, nullptr, 0), *pid);
    EXPECT_EQ(readFile(m_folder.path("out")), "A=1 2\nEMPTY=\n");
}

TEST_F(SpawnTest, theEnvironmentIsInheritedWithoutOne) {
    setenv("TARNVALE_INHERITED", "yes", 1);
    EXPECT_EQ(outputOf("echo $TARNVALE_INHERITED"), "yes\n");
    unsetenv("TARNVALE_INHERITED");
}

TEST_F(SpawnTest, nothingElseIsOpen) {
    const FileDescriptor low(open("/dev/null", O_RDONLY));     // NOLINT: it is to be inheritable
    const FileDescriptor high(fcntl(low.get(), F_DUPFD, 200)); // NOLINT: the same
    ASSERT_TRUE(high.isOpen());
    // A pipe of the shell's own would be among them.
    const std::string open = outputOf("ls /proc/$$/fd; true", {.descriptors = {{9, m_file.get()}}});
    // Shells keep their own from 10 on.
    EXPECT_TRUE(open.starts_with("0\n1\n2\n9\n")) << open;
    EXPECT_EQ(open.find("200"), std::string::npos) << open;
}

TEST_F(SpawnTest, whatIsMissingOfTheFirstThreeIsTheNullDevice) {
    EXPECT_EQ(outputOf("readlink /proc/$$/fd/0 /proc/$$/fd/2"), "/dev/null\n/dev/null\n");
}

TEST_F(SpawnTest, numbersThatCrossAreKeptApart) {
    const FileDescriptor first(open(m_folder.write("first", "").c_str(), O_WRONLY | O_CLOEXEC));
    const FileDescriptor second(open(m_folder.write("second", "").c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_LT(first.get(), 10) << "the test needs low numbers";
    ASSERT_LT(second.get(), 10);
    const std::string a = std::to_string(first.get());
    const std::string b = std::to_string(second.get());
    outputOf("echo 1 >&" + b + "; echo 2 >&" + a,
             {.descriptors = {{first.get(), second.get()}, {second.get(), first.get()}}});
    EXPECT_EQ(readFile(m_folder.path("first")), "1\n");
    EXPECT_EQ(readFile(m_folder.path("second")), "2\n");
}

TEST_F(SpawnTest, noSignalIsBlockedOrIgnored) {
    sigset_t blocked;
    sigset_t before;
    sigfillset(&blocked);
    const auto pipeAction = signal(SIGPIPE, SIG_IGN);
    const auto userAction = signal(SIGUSR1, SIG_IGN);
    pthread_sigmask(SIG_SETMASK, &blocked, &before);
    const std::string status = outputOf("grep -E '^Sig(Blk|Ign):' /proc/self/status");
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    signal(SIGPIPE, pipeAction);
    signal(SIGUSR1, userAction);
    // The C library ignores its own two signals, 32 and 33, in the new process.
    const auto lines = nonEmptyLines(status);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "SigBlk:\t0000000000000000");
    constexpr std::uint64_t standardSignals = 0x7fff'ffff;
    EXPECT_EQ(std::stoull(std::string(words(lines[1]).back()), nullptr, 16) & standardSignals, 0U)
        << lines[1];
}

TEST_F(SpawnTest, aSessionOfItsOwn) {
    EXPECT_EQ(outputOf("[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && echo leader", {.newSession = true}),
              "leader\n");
    EXPECT_EQ(outputOf("cut -d' ' -f6 /proc/$$/stat >" + m_folder.path("session")), "leader\n");
    EXPECT_EQ(readFile(m_folder.path("session")), std::to_string(getsid(0)) + "\n");
}

TEST_F(SpawnTest, whatCantBeStartedIsAnError) {
    struct Row {
        SpawnOrder order;
        int error;
        const char *reason;
    };
    const Row rows[]{
        {{.path = m_folder.path("missing")}, ENOENT, "no such program"},
        {{.path = m_folder.write("plain", "")}, EACCES, "not executable"},
        {{.path = m_folder.path()}, EACCES, "a folder"},
        {{.path = "/bin/true", .arguments = {std::string("a\0b", 3)}}, EINVAL, "a zero byte would cut it"},
        {{.path = "/bin/true", .arguments = {std::string(8u << 20, 'x')}},
         E2BIG,
         "longer than the system takes"},
        {{.path = "/bin/true", .descriptors = {{1, 12345}}}, EBADF, "a descriptor that isn't open"},
        {{.path = "/bin/true", .folder = m_file.get()}, ENOTDIR, "a file to work in"},
    };
    for (const Row &row : rows) {
        const auto pid = spawn(row.order);
        ASSERT_FALSE(pid) << row.reason;
        EXPECT_EQ(pid.error(), row.error) << row.reason;
    }
}

/// By a descriptor of the process and by a waiting thread.
class SpawnedProcessTest : public testing::TestWithParam<Means> {
protected:
    ~SpawnedProcessTest() override {
        killMarked(m_pid, m_folder.path());
        settle();
    }

    /// Starts a shell script and records how it ends.
    std::unique_ptr<SpawnedProcess> start(const std::string &body) {
        auto process = SpawnedProcess::start(
            {.path = m_folder.writeScript("script", body)},
            [this](int status) { m_statuses.push_back(status); }, GetParam());
        EXPECT_TRUE(process);
        m_pid = (*process)->pid();
        return std::move(*process);
    }
    [[nodiscard]] bool isGone() const { return !std::filesystem::exists("/proc/" + std::to_string(m_pid)); }

    TemporaryFolder m_folder;
    Pid m_pid = -1;
    std::vector<int> m_statuses;
};

const std::string endless = "while :; do sleep 0.05; done";

TEST_P(SpawnedProcessTest, theEndIsToldOnceWithItsStatus) {
    const auto process = start("exit 3");
    EXPECT_TRUE(waitFor([&] { return !m_statuses.empty(); }));
    settle();
    ASSERT_EQ(m_statuses.size(), 1U);
    EXPECT_TRUE(WIFEXITED(m_statuses.front()));
    EXPECT_EQ(WEXITSTATUS(m_statuses.front()), 3);
    EXPECT_FALSE(process->isRunning());
    EXPECT_TRUE(isGone()) << "it is reaped";
    process->terminate();
}

TEST_P(SpawnedProcessTest, anEndBySignalIsToldAsSuch) {
    const auto process = start(endless);
    EXPECT_TRUE(process->isRunning());
    process->terminate();
    EXPECT_TRUE(waitFor([&] { return !m_statuses.empty(); }));
    ASSERT_EQ(m_statuses.size(), 1U);
    EXPECT_TRUE(WIFSIGNALED(m_statuses.front()));
    EXPECT_EQ(WTERMSIG(m_statuses.front()), SIGTERM);
}

TEST_P(SpawnedProcessTest, anEndIsSeenBeforeItIsTold) {
    const auto process = start("exit 0");
    EXPECT_TRUE(eventually([&] { return !process->isRunning(); }));
    EXPECT_THAT(m_statuses, ElementsAre()) << "only the event loop tells";
    EXPECT_TRUE(waitFor([&] { return !m_statuses.empty(); }));
}

TEST_P(SpawnedProcessTest, whoIsLetGoGoesOnAndIsReaped) {
    start(endless).reset();
    EXPECT_TRUE(isAlive(m_pid));
    ASSERT_TRUE(eventually([&] { return readFile("/proc/" + std::to_string(m_pid) + "/cmdline") != ""; }));
    killMarked(m_pid, m_folder.path());
    EXPECT_TRUE(eventually([&] { return isGone(); }));
    settle();
    EXPECT_THAT(m_statuses, ElementsAre());
}

TEST_P(SpawnedProcessTest, whoHasEndedUnnoticedIsReaped) {
    auto process = start("exit 0");
    EXPECT_TRUE(eventually([&] { return !process->isRunning(); }));
    process.reset();
    EXPECT_TRUE(eventually([&] { return isGone(); }));
    settle();
    EXPECT_THAT(m_statuses, ElementsAre());
}

TEST_P(SpawnedProcessTest, theCallMayDeleteTheObject) {
    std::unique_ptr<SpawnedProcess> process;
    bool isTold = false;
    auto started = SpawnedProcess::start(
        {.path = "/bin/true"},
        [&](int) {
            process.reset();
            isTold = true;
        },
        GetParam());
    ASSERT_TRUE(started);
    process = std::move(*started);
    EXPECT_TRUE(waitFor([&] { return isTold; }));
    EXPECT_EQ(process, nullptr);
    settle();
}

TEST_P(SpawnedProcessTest, manyEndAtOnce) {
    constexpr std::size_t count = 40;
    std::vector<std::unique_ptr<SpawnedProcess>> processes;
    for (std::size_t i = 0; i < count; ++i)
        processes.push_back(start("exit " + std::to_string(i)));
    EXPECT_TRUE(waitFor([&] { return m_statuses.size() == count; }));
}

INSTANTIATE_TEST_SUITE_P(Means, SpawnedProcessTest, testing::Values(Means::best, Means::thread),
                         [](const auto &chosen) { return chosen.param == Means::best ? "best" : "thread"; });

TEST(ChildWatchTest, aChildThatSomebodyElseReapsHasEndedWithNothing) {
    const auto pid = spawn({.path = "/bin/false"});
    ASSERT_TRUE(pid);
    ChildWatch watch(*pid);
    ASSERT_EQ(waitpid(*pid, nullptr, 0), *pid);
    EXPECT_TRUE(watch.hasEnded());
    EXPECT_EQ(watch.reap(), 0);
}

} // namespace
} // namespace tarnvale
