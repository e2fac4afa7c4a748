#include "discovery/linux/TrackedProcess.h"
#include "discovery/linux/ProcessCache.h"

#include "support/FakeProc.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// What the sample process says about itself; ticks are hundredths of a second wherever Linux runs.
class TrackedProcessTest : public testing::Test {
protected:
    TrackedProcessTest() {
        if (sysconf(_SC_CLK_TCK) != 100)
            throw std::runtime_error("the numbers here are for 100 ticks a second");
        proc.add(sample);
    }

    bool refresh() { return process.refresh(++scan, proc.uptime, true); }

    /// Scans on, after `text` changed without a trace in the counters, until `isSeen`; how many it took.
    template<typename IsSeen> int scansUntil(IsSeen isSeen) {
        for (int count = 1; count <= 20; ++count) {
            proc.pass(2s);
            EXPECT_TRUE(refresh());
            if (isSeen())
                return count;
        }
        return 99;
    }

    FakeProc proc;
    FileDescriptor folder = openFolderAt(AT_FDCWD, proc.procFolder().c_str());
    FakeProcess sample{.pid = 42,
                       .ppid = 7,
                       .comm = "node",
                       .userTime = 900,
                       .systemTime = 100,
                       .startTime = 90'000, // 900 s after boot, 100 s before now
                       .words = {"node", "server.js"},
                       .cgroup = "0::/app.slice/web.service\n",
                       .cwd = "/srv/web",
                       .executable = "/usr/bin/node"};
    TrackedProcess process{folder.get(), 42};
    std::uint64_t scan = 1;
};

TEST_F(TrackedProcessTest, everyTextIsReadFromItsFile) {
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.command(), "node");
    EXPECT_EQ(process.args(), "node server.js");
    EXPECT_THAT(process.words(), ElementsAre("node", "server.js"));
    EXPECT_EQ(process.cwd(), "/srv/web");
    EXPECT_EQ(process.executable(), "/usr/bin/node");
    EXPECT_EQ(process.cgroup(), "/app.slice/web.service");
    EXPECT_EQ(process.memoryKB(), 256 * sysconf(_SC_PAGESIZE) / 1024);
    EXPECT_EQ(process.age(), 100s);
    EXPECT_EQ(process.start(), 900s);
}

TEST_F(TrackedProcessTest, whatCannotBeReadIsLeftOut) {
    proc.add({.pid = 43, .words = {}, .cgroup = ""});
    std::filesystem::remove(proc.procFolder() + "/43/statm");
    std::filesystem::remove(proc.procFolder() + "/43/cgroup");
    TrackedProcess bare(folder.get(), 43);
    ASSERT_TRUE(bare.refresh(1, proc.uptime, false));
    EXPECT_EQ(bare.args(), "[server]");
    EXPECT_EQ(bare.cwd(), std::nullopt);
    EXPECT_EQ(bare.executable(), "");
    EXPECT_EQ(bare.cgroup(), "");
    EXPECT_EQ(bare.memoryKB(), 256 * sysconf(_SC_PAGESIZE) / 1024) << "the rough number of stat";
    EXPECT_FALSE(bare.isHeldOpen());
}

TEST_F(TrackedProcessTest, aProcessThatHasGoneIsGone) {
    ASSERT_TRUE(refresh());
    proc.remove(42);
    EXPECT_FALSE(refresh());
    TrackedProcess none(folder.get(), 4711);
    EXPECT_FALSE(none.refresh(1, proc.uptime, true));
}

TEST_F(TrackedProcessTest, wordsOfAProcessThatHasGoneAreNone) {
    ASSERT_TRUE(refresh());
    ASSERT_THAT(process.words(), ElementsAre("node", "server.js"));
    proc.remove(42);
    EXPECT_TRUE(process.words().empty());
}

TEST_F(TrackedProcessTest, aPidThatWasGivenOutAgainIsAnotherProcess) {
    ASSERT_TRUE(refresh());
    ASSERT_EQ(process.args(), "node server.js");
    proc.remove(42);
    FakeProcess other = sample;
    other.startTime = 95'000;
    other.words = {"ruby", "app.rb"};
    other.comm = "ruby";
    proc.add(other);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.command(), "ruby");
    EXPECT_EQ(process.args(), "ruby app.rb");
    EXPECT_EQ(process.start(), 950s);
    EXPECT_NEAR(process.cpu(), 20.0, 1e-9) << "10 s used in the 50 s since its own start";
}

TEST_F(TrackedProcessTest, textsAreReadAgainAfterAnExec) {
    ASSERT_TRUE(refresh());
    ASSERT_EQ(process.args(), "node server.js");
    // exec keeps the pid and the start time; the size of the memory changes.
    sample.words = {"nginx"};
    sample.comm = "nginx";
    sample.executable = "/usr/sbin/nginx";
    sample.virtualSize = 9u << 20;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.args(), "nginx");
    EXPECT_EQ(process.command(), "nginx");
    EXPECT_EQ(process.executable(), "/usr/sbin/nginx");
}

TEST_F(TrackedProcessTest, everyTraceOfHavingRunCounts) {
    const auto changes = std::vector<std::function<void(FakeProcess &)>>{
        [](FakeProcess &p) { ++p.userTime; },      [](FakeProcess &p) { ++p.systemTime; },
        [](FakeProcess &p) { ++p.minorFaults; },   [](FakeProcess &p) { ++p.virtualSize; },
        [](FakeProcess &p) { ++p.residentPages; }, [](FakeProcess &p) { p.comm = "other"; }};
    int number = 0;
    for (const auto &change : changes) {
        ASSERT_TRUE(refresh());
        static_cast<void>(process.cwd());
        change(sample);
        sample.cwd = "/srv/" + std::to_string(++number);
        proc.change(sample);
        ASSERT_TRUE(refresh());
        EXPECT_EQ(process.cwd(), sample.cwd);
    }
}

TEST_F(TrackedProcessTest, aQuietChangeIsSeenAfterAFewScans) {
    ASSERT_TRUE(refresh());
    ASSERT_EQ(process.cwd(), "/srv/web");
    ASSERT_EQ(process.args(), "node server.js");
    sample.cwd = "/srv/other";
    sample.words = {"node", "other.js"};
    proc.change(sample);
    EXPECT_LE(scansUntil([&] { return process.cwd() == "/srv/other"; }), 8);
    EXPECT_EQ(process.args(), "node other.js");
}

/// The kernel counts how often the process has run; it was read twice, so that the count is known.
class RestingProcessTest : public TrackedProcessTest {
protected:
    RestingProcessTest() {
        sample.schedule = "52909 0 3\n";
        proc.change(sample);
        if (!refresh() || !refresh())
            throw std::runtime_error("the sample process can't be read");
    }

    /// The process runs and uses `ticks` of processor time.
    void run(std::uint64_t ticks) {
        sample.userTime += ticks;
        sample.schedule = "52909 0 " + std::to_string(++runs) + "\n";
        proc.change(sample);
    }

    int runs = 3;
};

TEST_F(RestingProcessTest, whatHasNotRunIsNotReadAgain) {
    ASSERT_EQ(process.cwd(), "/srv/web");
    sample.userTime += 5; // without a trace in the count: nobody looks
    sample.cwd = "/srv/other";
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_FALSE(process.mayHaveRun());
    EXPECT_EQ(process.stat().userTime, 900u);
    EXPECT_EQ(process.cwd(), "/srv/web");
}

TEST_F(RestingProcessTest, whatHasRunIsReadAtOnce) {
    ASSERT_TRUE(refresh());
    ASSERT_EQ(process.cwd(), "/srv/web");
    sample.cwd = "/srv/other";
    run(5);
    ASSERT_TRUE(refresh());
    EXPECT_TRUE(process.mayHaveRun());
    EXPECT_EQ(process.stat().userTime, 905u);
    EXPECT_EQ(process.cwd(), "/srv/other");
}

TEST_F(RestingProcessTest, itGrowsOlderAndUsesNothing) {
    proc.pass(2s);
    run(100);
    ASSERT_TRUE(refresh());
    ASSERT_NEAR(process.cpu(), 50.0, 1e-9);
    proc.pass(3s);
    ASSERT_TRUE(refresh());
    EXPECT_FALSE(process.mayHaveRun());
    EXPECT_EQ(process.cpu(), 0.0);
    EXPECT_EQ(process.age(), 105s);
    proc.pass(2s);
    run(100);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 50.0, 1e-9) << "since the last scan, not since the last reading";
}

TEST_F(RestingProcessTest, otherThreadsMayHaveRun) {
    sample.threads = 2;
    run(1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(refresh());
        EXPECT_TRUE(process.mayHaveRun());
    }
    sample.threads = 1;
    run(1);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(refresh());
    EXPECT_FALSE(process.mayHaveRun());
}

TEST_F(RestingProcessTest, whatWasRunningWhenLastSeenMayHaveRunOn) {
    sample.state = 'R';
    run(1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(refresh());
        EXPECT_TRUE(process.mayHaveRun());
    }
}

TEST_F(RestingProcessTest, whatOthersChangedIsSeenAfterAWhile) {
    ASSERT_EQ(process.cgroup(), "/app.slice/web.service");
    sample.cgroup = "0::/app.slice/moved.service\n";
    proc.change(sample);
    int scans = 0;
    while (process.cgroup() != "/app.slice/moved.service" && ++scans < 100)
        ASSERT_TRUE(refresh());
    EXPECT_LE(scans, 64);
    EXPECT_GT(scans, 8);
}

TEST_F(RestingProcessTest, aRestingProcessThatHasGoneIsGone) {
    ASSERT_TRUE(refresh());
    proc.remove(42);
    EXPECT_FALSE(refresh());
    EXPECT_FALSE(process.isHeldOpen());
}

TEST_F(RestingProcessTest, itsPidMayPassToAnother) {
    ASSERT_TRUE(refresh());
    proc.remove(42);
    sample.startTime = 95'000;
    sample.words = {"ruby", "app.rb"};
    proc.add(sample); // with the same count, by chance
    ASSERT_TRUE(refresh());
    EXPECT_TRUE(process.mayHaveRun());
    EXPECT_EQ(process.args(), "ruby app.rb");
}

TEST_F(RestingProcessTest, withoutAFileToKeepThereIsNoProof) {
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(process.refresh(++scan, proc.uptime, false));
        EXPECT_TRUE(process.mayHaveRun());
        EXPECT_FALSE(process.isHeldOpen());
    }
}

TEST_F(TrackedProcessTest, theProcessorIsMeasuredBetweenScans) {
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 10.0, 1e-9) << "at first sight: 10 s used in a life of 100 s";
    proc.pass(2s);
    sample.userTime += 50;
    sample.systemTime += 50;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 50.0, 1e-9) << "1 s used in 2 s";
    proc.pass(2s);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.cpu(), 0.0) << "nothing used since";
    proc.pass(1s);
    sample.userTime += 350;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 350.0, 1e-9) << "several processors";
}

TEST_F(TrackedProcessTest, aMomentTooShortKeepsTheLastRate) {
    ASSERT_TRUE(refresh());
    sample.userTime += 1;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 10.0, 1e-9) << "no time has passed";
    proc.pass(100ms);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 10.0, 1e-9);
    proc.pass(100ms);
    ASSERT_TRUE(refresh());
    EXPECT_NEAR(process.cpu(), 5.0, 1e-9) << "one tick in 200 ms";
}

TEST_F(TrackedProcessTest, aProcessThatStartedThisVeryMomentHasUsedNothing) {
    proc.add({.pid = 43, .userTime = 5, .startTime = 100'000});
    proc.add({.pid = 44, .userTime = 5, .startTime = 100'001}); // the clocks' rounding
    for (const Pid pid : {43, 44}) {
        TrackedProcess young(folder.get(), pid);
        ASSERT_TRUE(young.refresh(1, proc.uptime, false));
        EXPECT_EQ(young.cpu(), 0.0);
        EXPECT_EQ(young.age(), 0s);
    }
}

TEST_F(TrackedProcessTest, processorTimeThatRunsBackwardsIsNoUse) {
    ASSERT_TRUE(refresh());
    proc.pass(2s);
    sample.userTime = 10;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.cpu(), 0.0);
}

TEST_F(TrackedProcessTest, aLongCommandLineIsBounded) {
    sample.words = {std::string(2u << 20, 'x')};
    sample.userTime += 1;
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.args(), std::string(256u << 10, 'x'));
    ASSERT_EQ(process.words().size(), 1u);
    EXPECT_EQ(process.words().front().size(), 64u << 10);
}

TEST_F(TrackedProcessTest, aCutNameIsMadeWhole) {
    sample.comm = "rails-developme";
    sample.executable = "/opt/rails-development";
    proc.change(sample);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.command(), "rails-development");
}

TEST_F(TrackedProcessTest, anEndedFirstThreadIsReadThroughALivingOne) {
    FakeProcess ended = sample;
    ended.state = 'Z';
    ended.threads = 2;
    ended.words = {};
    ended.cwd = "";
    ended.executable = "";
    proc.change(ended);
    proc.addThread(42, 50, sample);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.args(), "node server.js");
    EXPECT_EQ(process.cwd(), "/srv/web");
    EXPECT_EQ(process.executable(), "/usr/bin/node");
}

TEST_F(TrackedProcessTest, aZombieHasOnlyItsName) {
    FakeProcess ended = sample;
    ended.state = 'Z';
    ended.words = {};
    ended.cwd = "";
    proc.change(ended);
    ASSERT_TRUE(refresh());
    EXPECT_EQ(process.args(), "[node]");
    EXPECT_EQ(process.cwd(), std::nullopt);
}

class ProcessCacheTest : public TrackedProcessTest {
protected:
    ProcessCache cache{folder.get()};
};

TEST_F(ProcessCacheTest, aProcessIsReadOnceInAScan) {
    cache.beginScan(proc.uptime);
    TrackedProcess *found = cache.find(42);
    ASSERT_NE(found, nullptr);
    sample.userTime = 1234;
    proc.change(sample);
    EXPECT_EQ(cache.find(42), found);
    EXPECT_EQ(found->stat().userTime, 900u);
    cache.beginScan(proc.uptime);
    ASSERT_NE(cache.find(42), nullptr);
    EXPECT_EQ(cache.find(42)->stat().userTime, 1234u);
}

TEST_F(ProcessCacheTest, noProcessIsNull) {
    cache.beginScan(proc.uptime);
    for (const Pid pid : {0, -1, 43, 2147483647})
        EXPECT_EQ(cache.find(pid), nullptr) << pid;
    ASSERT_NE(cache.find(42), nullptr);
    proc.remove(42);
    cache.beginScan(proc.uptime);
    EXPECT_EQ(cache.find(42), nullptr);
}

/// Lowers the number of files that this program may open, for as long as it lives.
class FewDescriptors {
public:
    explicit FewDescriptors(rlim_t most) {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit lower{.rlim_cur = std::min(most, m_before.rlim_max), .rlim_max = m_before.rlim_max};
        if (setrlimit(RLIMIT_NOFILE, &lower) != 0)
            throw std::runtime_error("can't lower the limit");
    }
    FewDescriptors(const FewDescriptors &) = delete;
    FewDescriptors &operator=(const FewDescriptors &) = delete;
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before{};
};

TEST_F(ProcessCacheTest, fewFilesStayOpenHoweverManyProcessesThereAre) {
    for (Pid pid = 1000; pid < 1400; ++pid)
        proc.add({.pid = pid});
    const auto openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const FewDescriptors limit(256);
    ProcessCache limited(folder.get());
    const auto before = openFiles();
    for (int i = 0; i < 3; ++i) {
        limited.beginScan(proc.uptime);
        for (Pid pid = 1000; pid < 1400; ++pid)
            ASSERT_NE(limited.find(pid), nullptr);
        EXPECT_LE(openFiles() - before, 256 / 4) << "a quarter of what is allowed";
    }
    limited.beginScan(proc.uptime);
    limited.beginScan(proc.uptime);
    EXPECT_EQ(openFiles(), before) << "what isn't asked for is let go";
}

TEST_F(ProcessCacheTest, readingAheadTellsTheSameAsAskingOneByOne) {
    std::vector<Pid> pids;
    for (Pid pid = 1000; pid < 1300; ++pid) {
        proc.add({.pid = pid, .startTime = static_cast<std::uint64_t>(pid)});
        pids.push_back(pid);
    }
    const FewDescriptors limit(256);
    ProcessCache limited(folder.get());
    for (int i = 0; i < 3; ++i) {
        limited.beginScan(proc.uptime);
        limited.readAhead(pids);
        for (const Pid pid : pids) {
            const TrackedProcess *found = limited.find(pid);
            ASSERT_EQ(found == nullptr, pid < 1000 + i) << pid;
            if (found != nullptr) {
                EXPECT_EQ(found->stat().startTime, static_cast<std::uint64_t>(pid));
            }
        }
        proc.remove(1000 + i);
    }
}

TEST_F(ProcessCacheTest, readingAheadTellsWhoMayHaveRun) {
    for (const Pid pid : {1000, 1001})
        proc.add({.pid = pid, .schedule = "1 2 3\n"});
    for (int i = 0; i < 3; ++i) {
        cache.beginScan(proc.uptime);
        const auto mayHaveRun = cache.readingAhead({1000, 1001});
        EXPECT_EQ(mayHaveRun(1000), i < 2) << i;
        EXPECT_EQ(mayHaveRun(1001), i < 2) << i;
    }
    proc.change({.pid = 1001, .schedule = "1 2 4\n"});
    cache.beginScan(proc.uptime);
    const auto mayHaveRun = cache.readingAhead({1000, 1001});
    EXPECT_FALSE(mayHaveRun(1000));
    EXPECT_TRUE(mayHaveRun(1001));
}

TEST_F(ProcessCacheTest, onlySystemdInItsOwnGroupRunsServices) {
    proc.add({.pid = 70,
              .comm = "systemd",
              .cgroup = "0::/user.slice/user-1000.slice/user@1000.service/init.scope\n"});
    proc.add({.pid = 71, .comm = "systemd", .cgroup = "0::/user.slice/user-1000.slice/session-3.scope\n"});
    proc.add({.pid = 72,
              .comm = "(sd-pam)",
              .cgroup = "0::/user.slice/user-1000.slice/user@1000.service/init.scope\n"});
    cache.beginScan(proc.uptime);
    EXPECT_TRUE(cache.isServiceManager(*cache.find(1)));
    EXPECT_TRUE(cache.isServiceManager(*cache.find(70)));
    EXPECT_FALSE(cache.isServiceManager(*cache.find(71))) << "somebody's program that is only called so";
    EXPECT_FALSE(cache.isServiceManager(*cache.find(72)));
}

TEST_F(ProcessCacheTest, anotherFirstProcessRunsNoServices) {
    proc.remove(1);
    proc.add({.pid = 1, .ppid = 0, .comm = "init", .startTime = 1});
    cache.beginScan(proc.uptime);
    EXPECT_FALSE(cache.isServiceManager(*cache.find(1)));
}

} // namespace
} // namespace tarnvale
