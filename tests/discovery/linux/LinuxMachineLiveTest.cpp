// The whole machine as the real kernel tells it, with processes that these tests start.

#include "discovery/linux/LinuxMachine.h"

#include "discovery/linux/ForkedChild.h"
#include "discovery/linux/cgroups.h"
#include "discovery/linux/listeners.h"
#include "discovery/linux/procFiles.h"
#include "discovery/scanListeningPorts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <memory>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tarnvale {
namespace {

/// Ends a process that is no child of the test's.
class EndedAtLast {
public:
    explicit EndedAtLast(pid_t pid) : m_pid(pid) {}
    EndedAtLast(const EndedAtLast &) = delete;
    EndedAtLast &operator=(const EndedAtLast &) = delete;
    ~EndedAtLast() {
        if (m_pid > 1)
            kill(m_pid, SIGKILL);
    }

private:
    pid_t m_pid;
};

/// Keeps the sockets of a forked child open for as long as it lives.
const OpenListener &keepOpen(OpenListener open) {
    static std::vector<OpenListener> kept;
    kept.push_back(std::move(open));
    return kept.back();
}

const ListeningPort *recordOf(const std::vector<ListeningPort> &ports, std::int64_t port) {
    const auto found =
        std::find_if(ports.begin(), ports.end(), [&](const ListeningPort &row) { return row.port == port; });
    return found == ports.end() ? nullptr : &*found;
}

std::string listenOnLoopback() {
    return std::to_string(keepOpen(openListener("127.0.0.1")).port);
}

/// From now on `socket(AF_NETLINK, …)` fails with EPERM.
bool forbidNetlink() {
    sock_filter steps[]{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{.len = std::size(steps), .filter = steps};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST(LinuxMachineLiveTest, anOddNameComesThroughWhole) {
    const ForkedChild child([] {
        prctl(PR_SET_NAME, "a) R 1 (b\nc");
        return listenOnLoopback();
    });
    ASSERT_TRUE(child.said());
    LinuxMachine machine;
    const auto ports = scanListeningPorts(machine);
    const ListeningPort *port = recordOf(ports, std::stoi(*child.said()));
    ASSERT_NE(port, nullptr);
    EXPECT_EQ(port->pid, child.pid());
    EXPECT_EQ(port->command, "a) R 1 (b\nc");
    EXPECT_FALSE(port->isExposed);
    EXPECT_EQ(port->cwd, std::filesystem::current_path());
    EXPECT_GT(port->memoryKB.value_or(0), 0);
    ASSERT_TRUE(port->startedAt);
    EXPECT_LT(std::chrono::abs(machine.now() - *port->startedAt), std::chrono::minutes(2));
}

/// Forks a process whose first thread has ended and that holds a new socket alone once the caller has gone;
/// "{port} {pid}".
std::string leaveServerWithoutFirstThread() {
    const std::string port = listenOnLoopback();
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t inner = fork();
    if (inner == 0) {
        std::thread([&] {
            std::string stat;
            while (stat.find(") Z ") == stat.npos)
                readFileAt(AT_FDCWD, "/proc/self/stat", stat, 4096);
            static_cast<void>(!write(ends[1], "z", 1));
            for (;;)
                pause();
        }).detach();
        syscall(SYS_exit, 0); // this thread alone
    }
    char byte = 0;
    return read(ends[0], &byte, 1) == 1 ? port + " " + std::to_string(inner) : "died";
}

/// What is wrong with the record of such a server; empty when nothing is.
std::string lookAtServerWithoutFirstThread() {
    ForkedChild child(leaveServerWithoutFirstThread);
    if (!child.said() || child.said()->find(' ') == std::string::npos || *child.said() == "no pipe")
        return "not started";
    const int port = std::stoi(*child.said());
    const int inner = std::stoi(child.said()->substr(child.said()->find(' ')));
    const EndedAtLast ended(inner);
    child.kill();
    LinuxMachine machine;
    const auto ports = scanListeningPorts(machine);
    const ListeningPort *record = recordOf(ports, port);
    if (record == nullptr)
        return "not found";
    if (record->pid != inner || record->cwd != std::filesystem::current_path())
        return "another process or folder";
    return record->args == machine.currentDetails({getpid()}).at(getpid()).args ? ""
                                                                                : "args " + *record->args;
}

TEST(LinuxMachineLiveTest, aFirstThreadThatEndedHidesNothing) {
    EXPECT_EQ(lookAtServerWithoutFirstThread(), "");
}

TEST(LinuxMachineLiveTest, aFirstThreadThatEndedHidesNothingFromAPlainUser) {
    // The descriptors of a thread that has ended are shown as root's; those of the living ones are the
    // user's.
    if (geteuid() != 0)
        GTEST_SKIP()
            << "needs root, to become another user; a plain user's run of the case above tries the same";
    const auto said = inForkedChild([]() -> std::string {
        if (!becomeAnotherUser())
            return "still root";
        return lookAtServerWithoutFirstThread();
    });
    EXPECT_EQ(said, "");
}

TEST(LinuxMachineLiveTest, aChildKeepsThePortOfAHolderThatEnds) {
    ForkedChild child([]() -> std::string {
        const std::string port = listenOnLoopback();
        const pid_t inner = fork();
        if (inner == 0)
            for (;;)
                pause();
        return port + " " + std::to_string(inner);
    });
    ASSERT_TRUE(child.said());
    const int number = std::stoi(*child.said());
    const int inner = std::stoi(child.said()->substr(child.said()->find(' ')));
    const EndedAtLast ended(inner);
    LinuxMachine machine;
    auto ports = scanListeningPorts(machine);
    ASSERT_NE(recordOf(ports, number), nullptr);
    EXPECT_EQ(recordOf(ports, number)->pid, std::min(child.pid(), inner));
    child.kill();
    ports = scanListeningPorts(machine);
    ASSERT_NE(recordOf(ports, number), nullptr);
    EXPECT_EQ(recordOf(ports, number)->pid, inner);
}

int sharedSocket = -1;
int acknowledgement = -1;

void closeSharedSocket(int) {
    close(sharedSocket);
    const char done = 1;
    static_cast<void>(write(acknowledgement, &done, 1) + 1);
}

TEST(LinuxMachineLiveTest, aRestingHolderThatLetsGoIsSeenAtOnce) {
    OpenListener open = openListener("127.0.0.1");
    ASSERT_TRUE(open.isOpen());
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const FileDescriptor toRead(ends[0]);
    const FileDescriptor toWrite(ends[1]);
    const auto holdSocket = [&] {
        sharedSocket = open.socket.get();
        acknowledgement = toWrite.get();
        std::signal(SIGUSR1, closeSharedSocket);
        return std::string("ready");
    };
    const ForkedChild one(holdSocket);
    const ForkedChild two(holdSocket);
    ASSERT_TRUE(one.said() && two.said());
    open.socket.reset();

    LinuxMachine machine;
    const auto owner = [&] { // the lowest pid stands for all
        const auto ports = machine.listeningSockets();
        const ListeningPort *row = recordOf(ports, open.port);
        return row == nullptr ? 0 : row->pid;
    };
    const Pid first = std::min(one.pid(), two.pid());
    const Pid second = std::max(one.pid(), two.pid());
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(owner(), first);
    ASSERT_EQ(::kill(first, SIGUSR1), 0);
    char done = 0;
    ASSERT_EQ(read(toRead.get(), &done, 1), 1);
    EXPECT_EQ(owner(), second);
}

TEST(LinuxMachineLiveTest, withoutNetlinkTheTablesHaveToDo) {
    const auto said = inForkedChild([]() -> std::string {
        const OpenListener four = openListener("127.0.0.1");
        const OpenListener six = openListener("::1");
        if (!forbidNetlink())
            return std::string("skip: ") + strerror(errno);
        if (socket(AF_NETLINK, SOCK_RAW, 0) >= 0)
            return "netlink still works";
        LinuxMachine machine;
        const auto ports = scanListeningPorts(machine);
        const ListeningPort *port = recordOf(ports, four.port);
        if (port == nullptr || port->pid != getpid())
            return "IPv4 not found";
        return six.isOpen() && recordOf(ports, six.port) == nullptr ? "IPv6 not found" : "found";
    });
    ASSERT_TRUE(said);
    if (said->starts_with("skip"))
        GTEST_SKIP() << "no system call filter: " << *said;
    EXPECT_EQ(*said, "found");
}

TEST(LinuxMachineLiveTest, serversOfOtherNetworkNamespacesAreNotShown) {
    const ForkedChild child([]() -> std::string {
        return unshare(CLONE_NEWNET) != 0 ? std::string("skip: ") + strerror(errno)
                                          : std::to_string(keepOpen(openListener("0.0.0.0")).port);
    });
    ASSERT_TRUE(child.said());
    if (child.said()->starts_with("skip"))
        GTEST_SKIP() << "no network namespace of our own: " << *child.said();
    LinuxMachine machine;
    for (const ListeningPort &port : scanListeningPorts(machine))
        EXPECT_NE(port.pid, child.pid());
}

TEST(LinuxMachineLiveTest, aQuietMachineIsNotLookedThroughAgain) {
    constexpr std::size_t servers = 9;
    constexpr std::uint64_t scans = 60;
    const auto said = inOwnNamespaces([]() -> std::string {
        std::vector<std::unique_ptr<ForkedChild>> children;
        for (std::size_t i = 0; i < servers; ++i)
            children.push_back(std::make_unique<ForkedChild>(listenOnLoopback));
        LinuxMachine machine;
        if (scanListeningPorts(machine).size() != servers)
            return "not all were found";
        const auto walked = machine.walkCount();
        if (walked != servers + 1)
            return std::to_string(walked) + " looked through at first";
        for (std::uint64_t i = 0; i < scans; ++i)
            if (scanListeningPorts(machine).size() != servers)
                return "a record was lost";
        const auto again = machine.walkCount() - walked;
        const ForkedChild late(listenOnLoopback);
        if (recordOf(scanListeningPorts(machine), std::stoi(late.said().value_or("0"))) == nullptr)
            return "the late one was not found";
        return std::to_string(again);
    });
    ASSERT_TRUE(said);
    if (said->starts_with("skip"))
        GTEST_SKIP() << *said;
    ASSERT_THAT(*said, testing::MatchesRegex("[0-9]+"));
    // The audit looks at one process in a scan. Since Linux 6.2 it sees from outside that the servers haven't
    // changed; only the descriptors of the one that scans do.
    struct stat folder {};
    const bool tellsCount = stat("/proc/self/fd", &folder) == 0 && folder.st_size > 0;
    EXPECT_LE(std::stoull(*said), tellsCount ? scans / (servers + 1) + 1 : scans);
}

/// Control groups of our own in the real hierarchy, removed at the end.
class ControlGroupsTest : public testing::Test {
protected:
    void SetUp() override {
        std::string mounts;
        readFileAt(AT_FDCWD, "/proc/self/mounts", mounts, 1u << 20);
        m_top = parseCgroupMount(mounts);
        if (geteuid() != 0 || m_top.empty())
            GTEST_SKIP() << "needs root and a mounted cgroup2 hierarchy";
        m_top += "/tarnvale-test-" + std::to_string(getpid());
        std::error_code error;
        for (const char *group : {"", "/init.scope", "/web.service", "/web.socket"})
            if (!std::filesystem::create_directory(m_top + group, error))
                GTEST_SKIP() << "can't make control groups: " << error.message();
    }

    void TearDown() override {
        for (const char *group : {"/init.scope", "/web.service", "/web.socket", ""}) {
            // A group whose last process has just ended stays busy for a moment.
            for (int i = 0; i < 2000 && rmdir((m_top + group).c_str()) != 0 && errno == EBUSY; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    /// Moves the calling process into a group.
    [[nodiscard]] bool join(const std::string &group) const {
        std::ofstream file(m_top + "/" + group + "/cgroup.procs");
        file << getpid() << std::flush;
        return static_cast<bool>(file);
    }

private:
    std::string m_top;
};

TEST_F(ControlGroupsTest, aSocketThatWaitsForItsFirstConnectionIsItsUnits) {
    const ForkedChild manager([&]() -> std::string {
        if (!join("web.socket"))
            return "can't join";
        const std::string port = listenOnLoopback();
        prctl(PR_SET_NAME, "systemd");
        return join("init.scope") ? port : "can't join";
    });
    ASSERT_TRUE(manager.said());
    ASSERT_NE(*manager.said(), "can't join");
    LinuxMachine machine;
    const auto ports = scanListeningPorts(machine);
    const ListeningPort *port = recordOf(ports, std::stoi(*manager.said()));
    ASSERT_NE(port, nullptr);
    EXPECT_EQ(port->pid, manager.pid());
    EXPECT_EQ(port->service, "web.socket");
    EXPECT_EQ(port->serviceManager, ServiceManager::systemdUser);
}

TEST_F(ControlGroupsTest, anotherUsersServiceIsToldByItsGroup) {
    const ForkedChild manager([&]() -> std::string {
        prctl(PR_SET_NAME, "systemd");
        if (!join("init.scope"))
            return "can't join";
        int ends[2];
        if (pipe(ends) != 0)
            return "no pipe";
        const pid_t service = fork();
        if (service == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            prctl(PR_SET_NAME, "web");
            const std::string port = join("web.service") ? listenOnLoopback() : "can't join";
            static_cast<void>(!write(ends[1], port.data(), port.size()));
            for (;;)
                pause();
        }
        std::string port(16, '\0');
        port.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(ends[0], port.data(), port.size()))));
        return port + " " + std::to_string(service);
    });
    ASSERT_TRUE(manager.said());
    ASSERT_FALSE(manager.said()->starts_with("can't join"));
    const int number = std::stoi(*manager.said());
    const int service = std::stoi(manager.said()->substr(manager.said()->find(' ')));
    const auto said = inForkedChild([&]() -> std::string {
        if (!becomeAnotherUser())
            return "still root";
        LinuxMachine machine;
        const auto ports = scanListeningPorts(machine);
        const ListeningPort *port = recordOf(ports, number);
        return port == nullptr ? "not found"
                               : port->id() + " " + port->command + " " + port->service.value_or("none");
    });
    EXPECT_EQ(said, std::to_string(service) + ":" + std::to_string(number) + " web web.service");
}

} // namespace
} // namespace tarnvale
