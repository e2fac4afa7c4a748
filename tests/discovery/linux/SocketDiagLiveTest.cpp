// The kernel's own answers, to sockets that these tests open.

#include "discovery/linux/SocketDiag.h"

#include "discovery/linux/ForkedChild.h"
#include "discovery/linux/listeners.h"
#include "discovery/linux/parseProcNetTcp.h"
#include "discovery/linux/procFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <thread>

namespace tarnvale {
namespace {

using testing::AllOf;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

std::vector<Listener> rowsOf(const std::vector<Listener> &all, std::uint64_t inode) {
    std::vector<Listener> rows;
    std::copy_if(all.begin(), all.end(), std::back_inserter(rows),
                 [&](const Listener &listener) { return listener.inode == inode; });
    return rows;
}

std::vector<Listener> tables() {
    std::vector<Listener> all;
    for (const char *path : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::string content;
        readFileAt(AT_FDCWD, path, content, 64u << 20);
        const auto rows = parseProcNetTcp(content);
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

class SocketDiagLiveTest : public testing::Test {
protected:
    void SetUp() override {
        if (!diag.listeners())
            GTEST_SKIP() << "the kernel refuses netlink here";
    }

    SocketDiag diag;
};

TEST_F(SocketDiagLiveTest, everyKindOfBindingIsListed) {
    struct Row {
        const char *address;
        bool isDualStack;
        bool isLoopback;
    };
    const Row rows[]{{"127.0.0.1", false, true},
                     {"127.9.8.7", false, true},
                     {"0.0.0.0", false, false},
                     {"::1", false, true},
                     {"::", false, false},
                     {"::", true, false},
                     {"::ffff:127.0.0.1", true, true}};
    int tried = 0;
    for (const Row &row : rows) {
        const OpenListener open = openListener(row.address, {.isDualStack = row.isDualStack});
        if (!open.isOpen()) {
            std::cout << "left out " << row.address << ": " << strerror(errno) << "\n";
            continue;
        }
        ++tried;
        const auto listed = rowsOf(diag.listeners().value(), open.inode);
        ASSERT_EQ(listed.size(), 1u) << row.address;
        EXPECT_EQ(listed.front().port, open.port) << row.address;
        EXPECT_EQ(listed.front().isLoopback, row.isLoopback) << row.address;
    }
    EXPECT_GE(tried, 3) << "IPv4 is everywhere";
}

TEST_F(SocketDiagLiveTest, bothSocketsOfASharedPortAreListed) {
    const OpenListener first = openListener("127.0.0.1", {.sharesPort = true});
    ASSERT_TRUE(first.isOpen());
    const OpenListener second = openListener("127.0.0.1", {.port = first.port, .sharesPort = true});
    ASSERT_TRUE(second.isOpen()) << strerror(errno);
    const auto all = diag.listeners().value();
    EXPECT_EQ(rowsOf(all, first.inode).size(), 1u);
    EXPECT_EQ(rowsOf(all, second.inode).size(), 1u);
}

TEST_F(SocketDiagLiveTest, aClosedSocketIsListedNoMore) {
    OpenListener open = openListener("127.0.0.1");
    ASSERT_EQ(rowsOf(diag.listeners().value(), open.inode).size(), 1u);
    open.socket.reset();
    EXPECT_EQ(rowsOf(diag.listeners().value(), open.inode).size(), 0u);
}

TEST_F(SocketDiagLiveTest, aMultipathSocketIsListedOnce) {
    const OpenListener open = openListener("127.0.0.1", {.protocol = IPPROTO_MPTCP});
    if (!open.isOpen())
        GTEST_SKIP() << "no multipath TCP: " << strerror(errno);
    const auto listed = rowsOf(diag.listeners().value(), open.inode);
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed.front().port, open.port);
}

TEST_F(SocketDiagLiveTest, netlinkAndTheTablesAgree) {
    std::vector<OpenListener> open;
    for (int i = 0; i < 10; ++i)
        for (const char *address : {"127.0.0.1", "0.0.0.0", "::1", "::"})
            open.push_back(openListener(address));
    const auto asked = diag.listeners().value();
    const auto read = tables();
    for (const OpenListener &listener : open) {
        if (!listener.isOpen())
            continue; // no IPv6
        auto rows = rowsOf(asked, listener.inode);
        ASSERT_EQ(rows.size(), 1u);
        rows.front().cgroup.reset(); // the tables don't tell it
        // A table is read in pieces, and shows a row twice when other sockets come and go meanwhile.
        EXPECT_THAT(rowsOf(read, listener.inode), AllOf(Not(IsEmpty()), Each(rows.front())));
    }
}

TEST_F(SocketDiagLiveTest, thousandsOfSocketsAreAllListed) {
    constexpr rlim_t needed = 2600;
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    if (limit.rlim_max < needed)
        GTEST_SKIP() << "no more than " << limit.rlim_max << " descriptors allowed";
    const auto said = inForkedChild([&]() -> std::string {
        limit.rlim_cur = std::max(limit.rlim_cur, needed);
        if (setrlimit(RLIMIT_NOFILE, &limit) != 0)
            return "no descriptors";
        std::vector<OpenListener> open;
        std::vector<std::uint64_t> inodes;
        for (int i = 0; i < 2500; ++i) {
            open.push_back(openListener("127.0.0.1"));
            if (!open.back().isOpen())
                return std::string("can't listen: ") + strerror(errno);
            inodes.push_back(open.back().inode);
        }
        SocketDiag own;
        const auto all = own.listeners();
        if (!all)
            return "refused";
        std::vector<std::uint64_t> listed;
        for (const Listener &listener : *all)
            listed.push_back(listener.inode);
        std::sort(listed.begin(), listed.end());
        const auto missing = std::count_if(inodes.begin(), inodes.end(), [&](std::uint64_t inode) {
            return !std::binary_search(listed.begin(), listed.end(), inode);
        });
        return std::to_string(missing) + " missing";
    });
    EXPECT_EQ(said, "0 missing");
}

TEST_F(SocketDiagLiveTest, aStandingSocketIsListedWhileOthersComeAndGo) {
    const OpenListener standing = openListener("127.0.0.1");
    ASSERT_TRUE(standing.isOpen());
    std::jthread churn([](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            std::vector<OpenListener> open;
            for (int i = 0; i < 50; ++i)
                open.push_back(openListener("127.0.0.1"));
        }
    });
    for (int i = 0; i < 100; ++i) {
        const auto all = diag.listeners();
        ASSERT_TRUE(all);
        ASSERT_GE(rowsOf(*all, standing.inode).size(), 1u);
    }
}

TEST_F(SocketDiagLiveTest, socketsOfOtherNetworkNamespacesAreNotListed) {
    const ForkedChild child([]() -> std::string {
        if (unshare(CLONE_NEWNET) != 0)
            return std::string("skip: ") + strerror(errno);
        // Its loopback is down, but every address can be bound.
        static OpenListener open;
        open = openListener("0.0.0.0");
        return open.isOpen() ? std::to_string(open.inode) : std::string("can't listen: ") + strerror(errno);
    });
    ASSERT_TRUE(child.said());
    if (child.said()->starts_with("skip"))
        GTEST_SKIP() << "no network namespace of our own: " << *child.said();
    EXPECT_EQ(rowsOf(diag.listeners().value(), std::stoull(*child.said())).size(), 0u);
}

} // namespace
} // namespace tarnvale
