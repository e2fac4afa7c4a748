#include "discovery/linux/SocketDiag.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t sequence = 7;

/// Builds a datagram as the kernel would, and as it never would.
class Datagram {
public:
    template<typename T> void append(const T &value) {
        const auto *bytes = reinterpret_cast<const std::byte *>(&value);
        m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof value);
    }

    void pad() { m_bytes.resize((m_bytes.size() + NLMSG_ALIGNTO - 1) / NLMSG_ALIGNTO * NLMSG_ALIGNTO); }

    /// Begins a message; `end` fills its length in.
    void begin(std::uint16_t type, std::uint32_t number = sequence, std::uint16_t flags = NLM_F_MULTI) {
        pad();
        m_start = m_bytes.size();
        append(nlmsghdr{
            .nlmsg_len = 0, .nlmsg_type = type, .nlmsg_flags = flags, .nlmsg_seq = number, .nlmsg_pid = 0});
    }

    void end() { setLength(static_cast<std::uint32_t>(m_bytes.size() - m_start)); }
    void setLength(std::uint32_t length) { std::memcpy(m_bytes.data() + m_start, &length, sizeof length); }

    void addSocket(int family, const char *address, std::uint16_t port, std::uint32_t inode) {
        inet_diag_msg message{};
        message.idiag_family = static_cast<std::uint8_t>(family);
        message.id.idiag_sport = htons(port);
        message.idiag_inode = inode;
        ASSERT_EQ(inet_pton(family, address, message.id.idiag_src), 1) << address;
        append(message);
    }

    void addAttribute(std::uint16_t type, std::string_view value) {
        append(
            rtattr{.rta_len = static_cast<std::uint16_t>(sizeof(rtattr) + value.size()), .rta_type = type});
        for (const char byte : value)
            append(byte);
        pad();
    }

    void addGroup(std::uint64_t id) {
        addAttribute(INET_DIAG_CGROUP_ID, {reinterpret_cast<const char *>(&id), sizeof id});
    }

    /// A whole message about one socket.
    void addListener(int family, const char *address, std::uint16_t port, std::uint32_t inode) {
        begin(SOCK_DIAG_BY_FAMILY);
        addSocket(family, address, port, inode);
        end();
    }

    void addDone(std::int32_t error = 0, std::uint16_t flags = NLM_F_MULTI) {
        begin(NLMSG_DONE, sequence, flags);
        append(error);
        end();
    }

    [[nodiscard]] std::span<const std::byte> bytes() const { return m_bytes; }

private:
    std::vector<std::byte> m_bytes;
    std::size_t m_start = 0;
};

Listener listener(std::uint16_t port, bool isLoopback, std::uint64_t inode,
                  std::optional<std::uint64_t> cgroup = std::nullopt) {
    return {.port = port, .isLoopback = isLoopback, .inode = inode, .cgroup = cgroup};
}

TEST(ParseSocketDiagTest, oneDatagramHoldsSeveralSockets) {
    Datagram datagram;
    datagram.addListener(AF_INET, "127.0.0.1", 8080, 100);
    datagram.addListener(AF_INET, "0.0.0.0", 80, 101);
    datagram.addListener(AF_INET, "127.8.9.10", 65535, 102);
    datagram.addListener(AF_INET6, "::1", 3000, 103);
    datagram.addListener(AF_INET6, "::", 3001, 104);
    datagram.addListener(AF_INET6, "::ffff:127.0.0.1", 3002, 0xFFFFFFFF);
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::more);
    EXPECT_THAT(listeners, ElementsAre(listener(8080, true, 100), listener(80, false, 101),
                                       listener(65535, true, 102), listener(3000, true, 103),
                                       listener(3001, false, 104), listener(3002, true, 0xFFFFFFFF)));
}

TEST(ParseSocketDiagTest, theEndOfTheDumpMayFollowInTheSameDatagram) {
    Datagram datagram;
    datagram.addListener(AF_INET, "127.0.0.1", 8080, 100);
    datagram.addDone();
    datagram.addListener(AF_INET, "127.0.0.1", 8081, 101);
    std::vector<Listener> listeners{listener(1, true, 1)};
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::done);
    EXPECT_THAT(listeners, ElementsAre(listener(1, true, 1), listener(8080, true, 100)))
        << "what was there stays, and nothing comes after the end";
}

TEST(ParseSocketDiagTest, aDumpThatTheTableChangedUnderIsInterrupted) {
    for (const bool inTheEnd : {true, false}) {
        Datagram datagram;
        datagram.begin(SOCK_DIAG_BY_FAMILY, sequence,
                       static_cast<std::uint16_t>(NLM_F_MULTI | (inTheEnd ? 0 : NLM_F_DUMP_INTR)));
        datagram.addSocket(AF_INET, "0.0.0.0", 80, 5);
        datagram.end();
        datagram.addDone(0, static_cast<std::uint16_t>(NLM_F_MULTI | (inTheEnd ? NLM_F_DUMP_INTR : 0)));
        std::vector<Listener> listeners;
        EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::interrupted);
        EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5)));
    }
}

TEST(ParseSocketDiagTest, anInterruptionIsKnownBeforeTheEndComes) {
    // The mark may come in one datagram, the end in the next.
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY, sequence, NLM_F_MULTI | NLM_F_DUMP_INTR);
    datagram.addSocket(AF_INET, "0.0.0.0", 80, 5);
    datagram.end();
    std::vector<Listener> listeners;
    const auto state = parseSocketDiag(datagram.bytes(), sequence, listeners);
    ASSERT_TRUE(state);
    EXPECT_NE(*state, DumpState::done);
    EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5)));
}

TEST(ParseSocketDiagTest, anErrorOfTheKernelIsARefusal) {
    Datagram datagram;
    datagram.begin(NLMSG_ERROR);
    datagram.append(nlmsgerr{.error = -ENOENT, .msg = {}});
    datagram.end();
    std::vector<Listener> listeners;
    const auto state = parseSocketDiag(datagram.bytes(), sequence, listeners);
    ASSERT_FALSE(state);
    EXPECT_EQ(state.error(), DumpError::refused);
}

TEST(ParseSocketDiagTest, anErrorInTheEndOfTheDumpIsARefusal) {
    // A kernel whose TCP part of sock_diag can't be loaded answers with an end that carries -ENOENT
    // (netlink(7): the payload of NLMSG_DONE is the dump's result). It is no empty list.
    Datagram datagram;
    datagram.addDone(-ENOENT);
    std::vector<Listener> listeners;
    const auto state = parseSocketDiag(datagram.bytes(), sequence, listeners);
    ASSERT_FALSE(state);
    EXPECT_EQ(state.error(), DumpError::refused);
}

TEST(ParseSocketDiagTest, anEndWithoutAResultIsAnEnd) {
    Datagram datagram;
    datagram.begin(NLMSG_DONE);
    datagram.end();
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::done);
}

TEST(ParseSocketDiagTest, messagesOfOtherDumpsAndOtherKindsAreSkipped) {
    Datagram datagram;
    datagram.begin(NLMSG_ERROR, sequence - 1);
    datagram.append(nlmsgerr{.error = -EPERM, .msg = {}});
    datagram.end();
    datagram.begin(NLMSG_DONE, sequence + 1);
    datagram.append(std::int32_t{0});
    datagram.end();
    datagram.begin(SOCK_DIAG_BY_FAMILY, sequence - 1);
    datagram.addSocket(AF_INET, "0.0.0.0", 1, 1);
    datagram.end();
    datagram.begin(NLMSG_NOOP);
    datagram.end();
    datagram.addListener(AF_INET, "0.0.0.0", 80, 5);
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::more);
    EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5)));
}

TEST(ParseSocketDiagTest, theControlGroupIsFoundAmongOtherAttributes) {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY);
    datagram.addSocket(AF_INET, "0.0.0.0", 80, 5);
    datagram.addAttribute(INET_DIAG_SKV6ONLY, std::string_view("\1", 1)); // padded to 4 bytes
    datagram.addAttribute(INET_DIAG_CGROUP_ID, "1234");                   // too short for an id
    datagram.addAttribute(0x3FFF, "not known yet");
    datagram.addGroup(0x0000000100001E02);
    datagram.end();
    datagram.addListener(AF_INET, "0.0.0.0", 81, 6);
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::more);
    EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5, 0x0000000100001E02), listener(81, false, 6)));
}

TEST(ParseSocketDiagTest, attributesThatDoNotFitAreLeftAlone) {
    for (const int length : {0, 1, 3, 13, 4096, 65535}) {
        Datagram datagram;
        datagram.begin(SOCK_DIAG_BY_FAMILY);
        datagram.addSocket(AF_INET, "0.0.0.0", 80, 5);
        datagram.append(
            rtattr{.rta_len = static_cast<std::uint16_t>(length), .rta_type = INET_DIAG_CGROUP_ID});
        datagram.append(std::uint64_t{42});
        datagram.end();
        std::vector<Listener> listeners;
        EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::more);
        EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5))) << length;
    }
}

TEST(ParseSocketDiagTest, lengthsThatDoNotFitAreAnError) {
    for (const std::uint32_t length : {0u, 1u, 15u, 16u, 17u, 87u, 89u, 1000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        Datagram datagram;
        datagram.addListener(AF_INET, "0.0.0.0", 80, 5);
        ASSERT_EQ(datagram.bytes().size(), 88u);
        datagram.setLength(length);
        std::vector<Listener> listeners;
        const auto state = parseSocketDiag(datagram.bytes(), sequence, listeners);
        ASSERT_FALSE(state) << length;
        EXPECT_EQ(state.error(), DumpError::malformed) << length;
    }
}

TEST(ParseSocketDiagTest, aDatagramCutShortIsNeverTakenForAWholeOne) {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY);
    datagram.addSocket(AF_INET, "127.0.0.1", 80, 5);
    datagram.addGroup(42);
    datagram.end();
    const std::size_t first = datagram.bytes().size();
    datagram.addListener(AF_INET6, "::1", 81, 6);
    datagram.addDone();
    for (std::size_t length = 0; length < datagram.bytes().size(); ++length) {
        // A buffer of just this size, so that a read past its end is seen.
        const std::vector<std::byte> part(datagram.bytes().begin(),
                                          datagram.bytes().begin() + static_cast<std::ptrdiff_t>(length));
        std::vector<Listener> listeners;
        const auto state = parseSocketDiag(part, sequence, listeners);
        EXPECT_TRUE(!state || *state == DumpState::more) << length;
        EXPECT_LE(listeners.size(), length < first ? 0u : 2u) << length;
        const Listener expected = listener(80, true, 5, 42);
        EXPECT_EQ(listeners.empty() ? expected : listeners.front(), expected) << length;
    }
}

TEST(ParseSocketDiagTest, theLastMessageNeedsNoPadding) {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY);
    datagram.addSocket(AF_INET, "0.0.0.0", 80, 5);
    datagram.append(rtattr{.rta_len = sizeof(rtattr) + 1, .rta_type = INET_DIAG_SKV6ONLY});
    datagram.append(std::uint8_t{1});
    datagram.end();
    ASSERT_EQ(datagram.bytes().size() % NLMSG_ALIGNTO, 1u);
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag(datagram.bytes(), sequence, listeners), DumpState::more);
    EXPECT_THAT(listeners, ElementsAre(listener(80, false, 5)));
}

TEST(ParseSocketDiagTest, anEmptyDatagramSaysNothing) {
    std::vector<Listener> listeners;
    EXPECT_EQ(parseSocketDiag({}, sequence, listeners), DumpState::more);
    EXPECT_THAT(listeners, IsEmpty());
}

} // namespace
} // namespace tarnvale
