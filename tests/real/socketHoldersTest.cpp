#include "discovery/linux/LinuxMachine.h"
#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TestProcess.h"

#include <array>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

/// Sleeps until a signal ends it.
void rest() {
    for (;;)
        pause();
}

/// Listens on `port` and rests.
std::function<void()> server(std::uint16_t port) {
    return [port] {
        const FileDescriptor socket = listenOn(port);
        rest();
    };
}

TEST(RealSocketHoldersTest, aListenerStaysListedUnderTheWorkersWhenTheirParentDies) {
    const ReservedPort port;
    RealProcess parent([&] {
        const FileDescriptor socket = listenOn(port.number());
        if (fork() != 0)
            if (fork() != 0)
                rest();
        rest();
    });
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(eventually([&] { return descendantsOf(parent.pid()).size() == 2; }));
    const std::vector<Pid> workers = descendantsOf(parent.pid());

    LinuxMachine machine;
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, parent.pid())));
    parent.signal(SIGKILL);
    ASSERT_TRUE(parent.waitForEnd());
    EXPECT_THAT(scanPort(machine, port.number()),
                ElementsAre(Field(&ListeningPort::pid, std::min(workers[0], workers[1]))));
    for (const Pid worker : workers)
        kill(worker, SIGKILL);
    EXPECT_TRUE(eventually([&] { return listenerCount(port.number()) == 0; }));
    EXPECT_THAT(scanPort(machine, port.number()), IsEmpty());
}

TEST(RealSocketHoldersTest, aProcessThatClosedItsListenerNoLongerOwnsIt) {
    const ReservedPort port;
    const RealProcess parent([&] {
        sigset_t request;
        sigemptyset(&request);
        sigaddset(&request, SIGUSR1);
        sigprocmask(SIG_BLOCK, &request, nullptr);
        FileDescriptor socket = listenOn(port.number());
        if (fork() == 0)
            rest();
        int number = 0;
        sigwait(&request, &number);
        socket.reset();
        static_cast<void>(!write(STDOUT_FILENO, "closed", 6));
        rest();
    });
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(eventually([&] { return descendantsOf(parent.pid()).size() == 1; }));
    LinuxMachine machine;
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, parent.pid())));
    parent.signal(SIGUSR1);
    ASSERT_TRUE(eventually([&] { return parent.output() == "closed"; }));
    EXPECT_THAT(scanPort(machine, port.number()),
                ElementsAre(Field(&ListeningPort::pid, descendantsOf(parent.pid()).front())));
}

TEST(RealSocketHoldersTest, aServerStartedAnewOnItsPortIsListedWithItsNewPid) {
    const ReservedPort port;
    LinuxMachine machine;
    Pid last = 0;
    for (int round = 0; round < 3; ++round) {
        RealProcess process(server(port.number()));
        ASSERT_TRUE(awaitListeners(port.number()));
        EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, process.pid())));
        EXPECT_NE(process.pid(), last);
        last = process.pid();
        process.end();
    }
    EXPECT_THAT(scanPort(machine, port.number()), IsEmpty());
}

TEST(RealSocketHoldersTest, twoProcessesThatShareAPortAreOneRecordUnderTheLower) {
    const ReservedPort port;
    RealProcess first(server(port.number()));
    ASSERT_TRUE(awaitListeners(port.number()));
    RealProcess second(server(port.number()));
    ASSERT_TRUE(awaitListeners(port.number(), 2));
    RealProcess &lower = first.pid() < second.pid() ? first : second;
    RealProcess &higher = first.pid() < second.pid() ? second : first;

    LinuxMachine machine;
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, lower.pid())));
    lower.end();
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, higher.pid())));
}

TEST(RealSocketHoldersTest, twoCommandsOnAPortAreTwoRecordsAndBothAreStopped) {
    const ReservedPort port;
    RealProcess first(server(port.number()));
    RealProcess second([&] {
        prctl(PR_SET_NAME, "second-server");
        server(port.number())();
    });
    ASSERT_TRUE(awaitListeners(port.number(), 2));
    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_LT(records[0].pid, records[1].pid);

    std::string expected;
    for (const ListeningPort &record : records)
        expected += "Stopped " + record.command + " (PID " + std::to_string(record.pid) +
                    ") on :" + port.text() + ".\n";
    const ProgramRun run = tarnctl({"kill", port.text()});
    EXPECT_EQ(run.output, expected);
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(first.waitForEnd());
    EXPECT_TRUE(second.waitForEnd());
}

/// Sends `descriptor` over a socket, as a server does that hands its listener to another.
void handOver(int channel, int descriptor) {
    std::array<char, CMSG_SPACE(sizeof descriptor)> control{};
    char byte = 'x';
    iovec data{.iov_base = &byte, .iov_len = 1};
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr *header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof descriptor);
    memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    if (sendmsg(channel, &message, 0) != 1)
        _exit(1);
}

/// Takes what was handed over and keeps it open.
void takeOver(int channel) {
    std::array<char, CMSG_SPACE(sizeof(int))> control{};
    char byte = 0;
    iovec data{.iov_base = &byte, .iov_len = 1};
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    if (recvmsg(channel, &message, 0) != 1)
        _exit(1);
    rest();
}

TEST(RealSocketHoldersTest, aListenerHandedToAnOlderProcessIsFoundThere) {
    const ReservedPort port;
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    const FileDescriptor taking(ends[0]);
    const FileDescriptor giving(ends[1]);
    const RealProcess older([&] { takeOver(taking.get()); });
    LinuxMachine machine;
    EXPECT_THAT(scanPort(machine, port.number()), IsEmpty());

    RealProcess sender([&] {
        const FileDescriptor socket = listenOn(port.number());
        handOver(giving.get(), socket.get());
    });
    ASSERT_TRUE(sender.waitForEnd());
    ASSERT_TRUE(awaitListeners(port.number()));
    // Until the older process has run, the socket is only in the message, and nobody's.
    EXPECT_TRUE(eventually([&] { return !scanPort(machine, port.number()).empty(); }));
    EXPECT_THAT(scanPort(machine, port.number()), ElementsAre(Field(&ListeningPort::pid, older.pid())));
}

} // namespace
} // namespace tarnvale
