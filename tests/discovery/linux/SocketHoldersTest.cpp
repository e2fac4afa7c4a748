#include "discovery/linux/SocketHolders.h"

#include "discovery/linux/ForkedChild.h"
#include "support/FakeProc.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t socketInode = 31337;

class SocketHoldersTest : public testing::Test {
protected:
    /// Looks for the sockets with these inodes, each made in `group`.
    void update(const std::vector<std::uint64_t> &inodes, std::optional<std::uint64_t> group = std::nullopt) {
        std::vector<Listener> listeners;
        for (const std::uint64_t inode : inodes)
            listeners.push_back({.port = 80, .isLoopback = true, .inode = inode, .cgroup = group});
        cgroups.beginScan();
        holders.update(listeners, cgroups);
    }

    std::vector<Pid> pids(std::uint64_t inode = socketInode) const {
        std::vector<Pid> result;
        for (const Holder &holder : holders.holders(inode))
            result.push_back(holder.pid);
        return result;
    }

    /// `count` processes with one other descriptor each, from pid 1000 on.
    void addCrowd(int count) {
        for (int i = 0; i < count; ++i)
            proc.add({.pid = 1000 + i, .sockets = {{0, 7}}});
    }

    /// Updates until `isTrue`, at most 40; how many it took.
    template<typename IsTrue> int updatesUntil(IsTrue isTrue) {
        for (int count = 1; count <= 40; ++count) {
            update({socketInode});
            if (isTrue())
                return count;
        }
        return 99;
    }

    FakeProc proc;
    FileDescriptor folder = openFolderAt(AT_FDCWD, proc.procFolder().c_str());
    CgroupTree cgroups{proc.cgroupMount()};
    SocketHolders holders{folder.get()};
};

/// The most processes that an audit looks at in one update.
std::uint64_t auditShare(std::uint64_t processes) {
    return (processes + 31) / 32;
}

TEST_F(SocketHoldersTest, theFirstUpdateLooksThroughEverybody) {
    addCrowd(60);
    proc.add({.pid = 42, .sockets = {{0, 7}, {3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
    EXPECT_EQ(holders.walkCount(), 62u);
}

TEST_F(SocketHoldersTest, whatHasNotRunKeepsItsSockets) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    proc.add({.pid = 43, .sockets = {{3, socketInode}}});
    const std::vector<Listener> listeners{
        {.port = 80, .isLoopback = true, .inode = socketInode, .cgroup = std::nullopt}};
    std::vector<Pid> asked;
    const auto onlySecondRan = [&](Pid pid) {
        asked.push_back(pid);
        return pid == 43;
    };
    const auto updateAll = [&] {
        asked.clear();
        cgroups.beginScan();
        holders.update(listeners, cgroups, onlySecondRan);
    };
    updateAll();
    updateAll();
    EXPECT_THAT(asked, ElementsAre(42, 43));
    proc.closeDescriptor(42, 3);
    proc.closeDescriptor(43, 3);
    updateAll();
    EXPECT_THAT(pids(), ElementsAre(42)) << "taken at its word";
}

TEST_F(SocketHoldersTest, whoWasJustLookedThroughIsConfirmedOnce) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    const std::vector<Listener> listeners{
        {.port = 80, .isLoopback = true, .inode = socketInode, .cgroup = std::nullopt}};
    const auto nobodyRan = [](Pid) { return false; };
    holders.update(listeners, cgroups, nobodyRan);
    ASSERT_THAT(pids(), ElementsAre(42));
    proc.closeDescriptor(42, 3); // before anybody looked at its counters
    holders.update(listeners, cgroups, nobodyRan);
    EXPECT_THAT(pids(), IsEmpty());
}

TEST_F(SocketHoldersTest, anUnchangedMachineIsNotLookedThroughAgain) {
    addCrowd(60);
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    for (int i = 0; i < 50; ++i) {
        const std::uint64_t before = holders.walkCount();
        update({socketInode});
        EXPECT_THAT(pids(), ElementsAre(42));
        EXPECT_LE(holders.walkCount() - before, auditShare(62));
    }
}

TEST_F(SocketHoldersTest, aNewProcessIsTheOnlyOneLookedThrough) {
    addCrowd(60);
    update({});
    const std::uint64_t before = holders.walkCount();
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
    EXPECT_LE(holders.walkCount() - before, 1 + auditShare(62));
}

TEST_F(SocketHoldersTest, aProcessThatShowsUpAfterItsPidWasGivenOutIsFound) {
    // The kernel gives the pid out a moment before the process can be seen, and some sandboxes show a loadavg
    // that never changes: a socket without a holder must be reason enough to list the processes.
    addCrowd(3);
    proc.write("proc/loadavg", "0.00 0.00 0.00 1/60 42\n");
    update({});
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
}

TEST_F(SocketHoldersTest, aLoadavgThatTellsNothingIsNotTrusted) {
    for (const char *content : {"", "0.00 0.00 0.00 1/60", "0.00 0.00 0.00 1/60 x\n"}) {
        proc.write("proc/loadavg", content);
        update({});
        proc.add({.pid = 42, .sockets = {{3, socketInode}}});
        proc.write("proc/loadavg", content);
        update({socketInode});
        EXPECT_THAT(pids(), ElementsAre(42)) << content;
        proc.remove(42);
    }
}

TEST_F(SocketHoldersTest, aProcessThatHasGoneHoldsNothing) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.remove(42);
    update({socketInode});
    EXPECT_THAT(pids(), IsEmpty());
}

TEST_F(SocketHoldersTest, aClosedDescriptorHoldsNothing) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.closeDescriptor(42, 3);
    update({socketInode});
    EXPECT_THAT(pids(), IsEmpty());
}

TEST_F(SocketHoldersTest, aDescriptorUsedForAnotherSocketHoldsThatOne) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.openSocket(42, 3, 555);
    update({socketInode, 555});
    EXPECT_THAT(pids(), IsEmpty());
    EXPECT_THAT(pids(555), ElementsAre(42));
}

TEST_F(SocketHoldersTest, aSocketReboundInBetweenIsANewOne) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.openSocket(42, 3, 555);
    update({555});
    EXPECT_THAT(pids(), IsEmpty());
    EXPECT_THAT(pids(555), ElementsAre(42));
}

TEST_F(SocketHoldersTest, aPidGivenOutAgainDoesNotInheritTheSocket) {
    addCrowd(3);
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.remove(42);
    proc.add({.pid = 42, .comm = "other", .startTime = 9000, .sockets = {{3, 8}}});
    proc.add({.pid = 43, .sockets = {{3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(43));
}

TEST_F(SocketHoldersTest, aPidGivenOutAgainIsLookedThroughAgain) {
    proc.add({.pid = 42, .sockets = {{3, 8}}});
    update({});
    proc.remove(42);
    proc.add({.pid = 42, .startTime = 9000, .sockets = {{3, socketInode}}});
    proc.write("proc/loadavg", "0.00 0.00 0.00 1/60 43\n");
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
}

TEST_F(SocketHoldersTest, everyWorkerThatInheritedTheSocketHoldsIt) {
    for (const Pid pid : {44, 42, 43})
        proc.add({.pid = pid, .sockets = {{3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42, 43, 44));
    proc.remove(42);
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(43, 44)) << "the children keep the port";
}

TEST_F(SocketHoldersTest, twoDescriptorsOfOneProcessAreOneHolder) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}, {9, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
    proc.closeDescriptor(42, 3);
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42)) << "the other one still holds it";
}

TEST_F(SocketHoldersTest, aSocketThatNobodyHoldsIsSearchedForEverLess) {
    addCrowd(60);
    update({socketInode});
    const std::uint64_t before = holders.walkCount();
    for (int i = 0; i < 100; ++i)
        update({socketInode});
    // After 1, 2, 4, ... updates: about seven times in a hundred, not a hundred times.
    EXPECT_LE(holders.walkCount() - before, 8 * 61 + 100 * auditShare(61));
    EXPECT_GE(holders.walkCount() - before, 4 * 61u) << "but it isn't given up";
    EXPECT_THAT(pids(), IsEmpty());
}

TEST_F(SocketHoldersTest, aSearchInVainDoesNotDelayAnotherSocket) {
    addCrowd(60);
    for (int i = 0; i < 30; ++i)
        update({socketInode});
    proc.openSocket(1030, 5, 555);
    update({socketInode, 555});
    EXPECT_THAT(pids(555), ElementsAre(1030)) << "an old process listens on a new socket";
}

TEST_F(SocketHoldersTest, aSocketHandedToAnOldProcessIsFoundInTime) {
    addCrowd(60);
    proc.add({.pid = 2000, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.openSocket(1020, 5, socketInode);
    EXPECT_LE(updatesUntil([&] { return pids().size() == 2; }), 33);
    EXPECT_THAT(pids(), ElementsAre(1020, 2000));
}

TEST_F(SocketHoldersTest, whenTheSenderEndsTheReceiverIsFoundAtOnce) {
    addCrowd(60);
    proc.add({.pid = 2000, .sockets = {{3, socketInode}}});
    update({socketInode});
    proc.openSocket(1020, 5, socketInode);
    proc.remove(2000);
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(1020));
}

TEST_F(SocketHoldersTest, theSocketsGroupIsSearchedBeforeEverybody) {
    addCrowd(60);
    const auto group = proc.addGroup("/app.slice/web.service", {1007});
    update({});
    const std::uint64_t before = holders.walkCount();
    proc.openSocket(1007, 5, socketInode);
    update({socketInode}, group);
    EXPECT_THAT(pids(), ElementsAre(1007));
    EXPECT_LE(holders.walkCount() - before, 1 + auditShare(61));
}

TEST_F(SocketHoldersTest, aGroupThatLeadsNowhereDoesNotHideTheHolder) {
    addCrowd(3);
    const auto empty = proc.addGroup("/app.slice/web.socket", {});
    update({});
    proc.openSocket(1002, 5, socketInode);
    update({socketInode}, empty);
    EXPECT_THAT(pids(), ElementsAre(1002));
    proc.openSocket(1001, 5, 555);
    update({socketInode, 555}, 1'000'000'000'000u);
    EXPECT_THAT(pids(555), ElementsAre(1001)) << "a group that was removed";
}

TEST_F(SocketHoldersTest, anEndedFirstThreadIsLookedAtThroughALivingOne) {
    proc.add({.pid = 42, .state = 'Z', .threads = 2});
    proc.addThread(42, 50, {.pid = 50, .sockets = {{3, socketInode}}});
    update({socketInode});
    ASSERT_THAT(pids(), ElementsAre(42));
    EXPECT_EQ(holders.holders(socketInode).front().thread, 50);
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
}

TEST_F(SocketHoldersTest, kernelThreadsAreNotLookedThrough) {
    proc.add({.pid = 2, .ppid = 0, .comm = "kthreadd"});
    proc.add({.pid = 3, .ppid = 2, .comm = "rcu_gp"});
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    proc.write("proc/2/task/2/children", "3 ");
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
    EXPECT_EQ(holders.walkCount(), 2u) << "process 1 and the holder";
}

TEST_F(SocketHoldersTest, entriesThatVanishAreNobody) {
    addCrowd(3);
    // What a process looks like that goes while it is looked at: nothing inside, or only a part.
    std::filesystem::create_directory(proc.procFolder() + "/50");
    std::filesystem::create_directories(proc.procFolder() + "/51/fd");
    std::filesystem::create_directories(proc.procFolder() + "/52/task/53");
    proc.write("proc/54/fd", "a file where a folder should be");
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    update({socketInode});
    EXPECT_THAT(pids(), ElementsAre(42));
    EXPECT_THAT(holders.refused(), IsEmpty());
}

TEST_F(SocketHoldersTest, oddLinksAreNoSockets) {
    proc.add({.pid = 42, .sockets = {{3, socketInode}}});
    const std::string fd = proc.procFolder() + "/42/fd/";
    int number = 10;
    for (const char *target :
         {"socket:[]", "socket:[31337", "socket:[31337x]", "socket:[-31337]", "socket:31337", "pipe:[31337]",
          "anon_inode:[eventfd]", "/srv/socket:[31337]", "socket:[99999999999999999999999]",
          "/a/very/long/path/that/does/not/fit/socket:[31337]"})
        std::filesystem::create_symlink(target, fd + std::to_string(number++));
    proc.write("proc/42/fd/30", "no link");
    proc.add({.pid = 43, .sockets = {{1'048'575, 555}}});
    update({socketInode, 555});
    ASSERT_THAT(pids(), ElementsAre(42));
    EXPECT_EQ(holders.holders(socketInode).front().descriptor, 3);
    EXPECT_THAT(pids(555), ElementsAre(43));
}

TEST_F(SocketHoldersTest, socketsOfTheKernelHaveNoHolders) {
    proc.add({.pid = 42, .sockets = {{3, 0}}});
    update({0});
    const std::uint64_t before = holders.walkCount();
    EXPECT_THAT(pids(0), IsEmpty());
    update({0});
    EXPECT_LE(holders.walkCount() - before, auditShare(2)) << "and nobody searches for them";
}

TEST_F(SocketHoldersTest, withoutAProcessFileSystemNobodyHoldsAnything) {
    SocketHolders blind(-1);
    blind.update({{.port = 80, .isLoopback = true, .inode = socketInode, .cgroup = std::nullopt}}, cgroups);
    EXPECT_TRUE(blind.holders(socketInode).empty());
}

/// What another user sees of processes that only root may look into.
TEST_F(SocketHoldersTest, processesThatMayNotBeSeenAreRefused) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root, to become another user";
    for (const Pid pid : {42, 44})
        proc.add({.pid = pid, .sockets = {{3, socketInode}}});
    proc.add({.pid = 43, .sockets = {{3, 555}}});
    for (const char *pid : {"42", "44"})
        ASSERT_EQ(chmod((proc.procFolder() + "/" + pid + "/fd").c_str(), 0700), 0);
    const auto said = inForkedChild([&]() -> std::string {
        if (!becomeAnotherUser())
            return "still root";
        std::string text;
        for (int i = 0; i < 3; ++i) {
            update({socketInode, 555});
            text += std::to_string(pids().size()) + "," + std::to_string(pids(555).size()) + ",";
            for (const Pid pid : holders.refused())
                text += std::to_string(pid) + " ";
        }
        return text;
    });
    EXPECT_EQ(said, "0,1,42 44 0,1,42 44 0,1,42 44 ");
}

} // namespace
} // namespace tarnvale
