#include "discovery/linux/ForeignOwners.h"

#include "support/FakeProc.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

class ForeignOwnersTest : public testing::Test {
protected:
    /// What is told of a socket that was never asked for before.
    std::optional<Pid> ownerOf(const Listener &listener, const std::vector<Pid> &refused) {
        ForeignOwners fresh(processes, cgroups);
        return ownerInNextScan(fresh, listener, refused);
    }

    std::optional<Pid> ownerInNextScan(ForeignOwners &owners, const Listener &listener,
                                       const std::vector<Pid> &refused) {
        processes.beginScan(proc.uptime);
        cgroups.beginScan();
        owners.beginScan(refused);
        return owners.ownerOf(listener);
    }

    static Listener listener(std::uint16_t port, bool isLoopback,
                             std::optional<std::uint64_t> cgroup = std::nullopt) {
        return {.port = port, .isLoopback = isLoopback, .inode = 31337, .cgroup = cgroup};
    }

    void addProxy(Pid pid, const std::string &address, const std::string &port) {
        proc.add({.pid = pid,
                  .ppid = 90,
                  .comm = "docker-proxy",
                  .words = {"/usr/bin/docker-proxy", "-proto", "tcp", "-host-ip", address, "-host-port", port,
                            "-container-ip", "172.17.0.2", "-container-port", "80"}});
    }

    FakeProc proc;
    FileDescriptor folder = openFolderAt(AT_FDCWD, proc.procFolder().c_str());
    ProcessCache processes{folder.get()};
    CgroupTree cgroups{proc.cgroupMount()};
};

TEST_F(ForeignOwnersTest, aDockerProxyIsKnownByItsWords) {
    addProxy(100, "0.0.0.0", "8080");
    addProxy(101, "::", "8080");
    addProxy(102, "127.0.0.1", "8081");
    addProxy(103, "::1", "8082");
    const std::vector<Pid> refused{100, 101, 102, 103};
    EXPECT_EQ(ownerOf(listener(8080, false), refused), 100) << "either family stands for the container";
    EXPECT_EQ(ownerOf(listener(8081, true), refused), 102);
    EXPECT_EQ(ownerOf(listener(8082, true), refused), 103);
    EXPECT_EQ(ownerOf(listener(8081, false), refused), std::nullopt) << "bound to another address";
    EXPECT_EQ(ownerOf(listener(9999, false), refused), std::nullopt);
}

TEST_F(ForeignOwnersTest, onlyProcessesThatMayNotBeSeenComeIntoQuestion) {
    addProxy(100, "0.0.0.0", "8080");
    EXPECT_EQ(ownerOf(listener(8080, false), {}), std::nullopt);
    EXPECT_EQ(ownerOf(listener(8080, false), {99, 101}), std::nullopt);
}

TEST_F(ForeignOwnersTest, whatOnlySaysThatItIsADockerProxyIsNone) {
    proc.add({.pid = 100,
              .comm = "imposter",
              .words = {"docker-proxy", "-proto", "tcp", "-host-ip", "0.0.0.0", "-host-port", "8080"}});
    proc.add({.pid = 101,
              .comm = "docker-proxy",
              .words = {"docker-proxy", "-proto", "udp", "-host-port", "8080"}});
    proc.add({.pid = 102, .comm = "docker-proxy", .words = {}});
    EXPECT_EQ(ownerOf(listener(8080, false), {100, 101, 102}), std::nullopt);
}

TEST_F(ForeignOwnersTest, aProxyInAnotherGroupThanTheSocketIsNotItsOwner) {
    addProxy(100, "0.0.0.0", "8080");
    const auto docker = proc.addGroup("/system.slice/docker.service", {90, 100});
    const auto other = proc.addGroup("/system.slice/web.service", {91});
    EXPECT_EQ(ownerOf(listener(8080, false, docker), {90, 100}), 100);
    EXPECT_EQ(ownerOf(listener(8080, false, other), {90, 100}), std::nullopt);
}

TEST_F(ForeignOwnersTest, aServicesSocketBelongsToItsMainProcess) {
    const auto group = proc.addGroup("/system.slice/nginx.service", {50, 51, 52});
    proc.add({.pid = 50, .ppid = 1, .comm = "nginx", .cgroup = "0::/system.slice/nginx.service\n"});
    for (const Pid worker : {51, 52})
        proc.add({.pid = worker, .ppid = 50, .comm = "nginx"});
    EXPECT_EQ(ownerOf(listener(80, false, group), {50, 51, 52}), 50);
    EXPECT_EQ(ownerOf(listener(80, false, group), {51, 52}), std::nullopt)
        << "what can be seen and doesn't hold it isn't the owner";
}

TEST_F(ForeignOwnersTest, aGroupInsideTheServiceIsTheServices) {
    const auto group = proc.addGroup("/system.slice/web.service/payload", {50});
    proc.add({.pid = 50, .ppid = 1, .comm = "web"});
    EXPECT_EQ(ownerOf(listener(80, false, group), {50}), 50);
}

TEST_F(ForeignOwnersTest, whenTwoProcessesAnswerNothingIsTold) {
    const auto group = proc.addGroup("/system.slice/two.service", {50, 51});
    for (const Pid pid : {50, 51})
        proc.add({.pid = pid, .ppid = 1});
    EXPECT_EQ(ownerOf(listener(80, false, group), {50, 51}), std::nullopt);
}

TEST_F(ForeignOwnersTest, aUsersManagerRunsServicesToo) {
    const auto group = proc.addGroup("/user.slice/user@1001.service/app.slice/web.service", {50});
    proc.add({.pid = 40, .comm = "systemd", .cgroup = "0::/user.slice/user@1001.service/init.scope\n"});
    proc.add({.pid = 50, .ppid = 40});
    EXPECT_EQ(ownerOf(listener(80, false, group), {40, 50}), 50);
}

TEST_F(ForeignOwnersTest, otherGroupsSayNothing) {
    proc.add({.pid = 50, .ppid = 1});
    for (const char *path :
         {"/user.slice/session-3.scope", "/system.slice/web.socket", "/docker/0123", "/a.slice"})
        EXPECT_EQ(ownerOf(listener(80, false, proc.addGroup(path, {50})), {50}), std::nullopt) << path;
    EXPECT_EQ(ownerOf(listener(80, false, 1'000'000'000'000u), {50}), std::nullopt) << "a group that is gone";
    EXPECT_EQ(ownerOf(listener(80, false, proc.addGroup("", {50})), {50}), std::nullopt) << "the root";
    EXPECT_EQ(ownerOf(listener(80, false), {50}), std::nullopt) << "a kernel that doesn't tell";
}

TEST_F(ForeignOwnersTest, membersThatHaveGoneAreNobody) {
    const auto group = proc.addGroup("/system.slice/web.service", {50, 51});
    proc.add({.pid = 50, .ppid = 1});
    proc.add({.pid = 51, .ppid = 1});
    proc.remove(51);
    EXPECT_EQ(ownerOf(listener(80, false, group), {50, 51}), 50);
    proc.remove(50);
    EXPECT_EQ(ownerOf(listener(80, false, group), {50, 51}), std::nullopt);
}

TEST_F(ForeignOwnersTest, anAnswerIsKeptOnlyWhileItsProcessLives) {
    ForeignOwners owners(processes, cgroups);
    addProxy(100, "0.0.0.0", "8080");
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100, 101}), 100);
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100, 101}), 100);
    proc.remove(100);
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {101}), std::nullopt);
    proc.add({.pid = 100, .comm = "other", .startTime = 9000});
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100}), std::nullopt)
        << "only the number is the same";
}

TEST_F(ForeignOwnersTest, anAnswerIsJudgedAgainAfterAFewScans) {
    ForeignOwners owners(processes, cgroups);
    const auto group = proc.addGroup("/system.slice/web.service", {50, 51});
    proc.add({.pid = 50, .ppid = 1});
    EXPECT_EQ(ownerInNextScan(owners, listener(80, false, group), {50, 51}), 50);
    proc.add({.pid = 51, .ppid = 1});
    int scans = 0;
    while (ownerInNextScan(owners, listener(80, false, group), {50, 51}) && scans < 100)
        ++scans;
    EXPECT_LE(scans, 8) << "there are two that it could be now";
}

TEST_F(ForeignOwnersTest, anOwnerThatComesLateIsFoundAfterABoundedWait) {
    ForeignOwners owners(processes, cgroups);
    for (int scan = 0; scan < 200; ++scan)
        EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100}), std::nullopt);
    addProxy(100, "0.0.0.0", "8080");
    int scans = 1;
    while (!ownerInNextScan(owners, listener(8080, false), {100}) && scans < 200)
        ++scans;
    EXPECT_LE(scans, 64);
}

TEST_F(ForeignOwnersTest, aSocketThatWentIsForgotten) {
    ForeignOwners owners(processes, cgroups);
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100}), std::nullopt);
    owners.beginScan({100});
    owners.beginScan({100});
    addProxy(100, "0.0.0.0", "8080");
    EXPECT_EQ(ownerInNextScan(owners, listener(8080, false), {100}), 100);
}

} // namespace
} // namespace tarnvale
