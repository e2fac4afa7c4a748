#include "discovery/linux/SocketDiag.h"

#include "discovery/linux/addresses.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace tarnvale {

namespace {

// With a smaller buffer the kernel drops listeners from the answer without a word.
constexpr std::size_t receiveBuffer = 64u << 10;

constexpr std::uint32_t listenState = 1u << 10; // TCP_LISTEN, include/net/tcp_states.h

/// A value of type T at the front of `bytes`, which must be long enough.
template<typename T> T valueAt(std::span<const std::byte> bytes) {
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

constexpr std::size_t aligned(std::size_t length) {
    return (length + NLMSG_ALIGNTO - 1) / NLMSG_ALIGNTO * NLMSG_ALIGNTO;
}

std::optional<std::uint64_t> cgroupAttribute(std::span<const std::byte> attributes) {
    while (attributes.size() >= sizeof(rtattr)) {
        const auto header = valueAt<rtattr>(attributes);
        if (header.rta_len < sizeof(rtattr) || header.rta_len > attributes.size())
            break;
        if (header.rta_type == INET_DIAG_CGROUP_ID &&
            header.rta_len >= sizeof(rtattr) + sizeof(std::uint64_t))
            return valueAt<std::uint64_t>(attributes.subspan(sizeof(rtattr)));
        attributes = attributes.subspan(std::min(aligned(header.rta_len), attributes.size()));
    }
    return std::nullopt;
}

std::optional<Listener> parseListener(std::span<const std::byte> payload) {
    if (payload.size() < sizeof(inet_diag_msg))
        return std::nullopt;
    const auto message = valueAt<inet_diag_msg>(payload);
    std::array<std::uint8_t, 16> address{};
    std::memcpy(address.data(), message.id.idiag_src, address.size());
    return Listener{.port = ntohs(message.id.idiag_sport),
                    .isLoopback = message.idiag_family == AF_INET6 ? isLoopbackIPv6(address)
                                                                   : isLoopbackIPv4(address[0]),
                    .inode = message.idiag_inode,
                    .cgroup = cgroupAttribute(payload.subspan(sizeof(inet_diag_msg)))};
}

} // namespace

std::expected<DumpState, DumpError> parseSocketDiag(std::span<const std::byte> datagram,
                                                    std::uint32_t sequence,
                                                    std::vector<Listener> &listeners) {
    bool isInterrupted = false;
    while (datagram.size() >= sizeof(nlmsghdr)) {
        const auto header = valueAt<nlmsghdr>(datagram);
        if (header.nlmsg_len < sizeof(nlmsghdr) || header.nlmsg_len > datagram.size())
            return std::unexpected(DumpError::malformed);
        const auto payload = datagram.subspan(sizeof(nlmsghdr), header.nlmsg_len - sizeof(nlmsghdr));
        datagram = datagram.subspan(std::min(aligned(header.nlmsg_len), datagram.size()));
        if (header.nlmsg_seq != sequence)
            continue;
        isInterrupted = isInterrupted || (header.nlmsg_flags & NLM_F_DUMP_INTR) != 0;
        if (header.nlmsg_type == NLMSG_DONE) {
            // Its payload is the result of the dump, below zero for an error (netlink(7)).
            if (payload.size() >= sizeof(std::int32_t) && valueAt<std::int32_t>(payload) < 0)
                return std::unexpected(DumpError::refused);
            return isInterrupted ? DumpState::interrupted : DumpState::done;
        }
        if (header.nlmsg_type == NLMSG_ERROR)
            return std::unexpected(DumpError::refused);
        if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY)
            continue;
        const auto listener = parseListener(payload);
        if (!listener)
            return std::unexpected(DumpError::malformed);
        listeners.push_back(*listener);
    }
    return DumpState::more;
}

std::optional<std::vector<Listener>> SocketDiag::listeners() {
    std::vector<Listener> all;
    if (!open())
        return std::nullopt;
    const auto four = dump(AF_INET, all);
    const auto six = four ? dump(AF_INET6, all) : four;
    if (!four || !six)
        m_socket.reset(); // what is left of the answer must not meet the next question
    // A kernel without IPv6 refuses that dump.
    const bool isComplete = four && (six || six.error() == DumpError::refused);
    return isComplete ? std::optional(std::move(all)) : std::nullopt;
}

bool SocketDiag::open() {
    if (m_socket.isOpen())
        return true;
    m_socket = FileDescriptor(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
    if (!m_socket.isOpen())
        return false;
    // The kernel answers at once; the limit is for a sandbox that swallows the request.
    const timeval limit{.tv_sec = 1, .tv_usec = 0};
    setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    m_buffer.resize(receiveBuffer);
    return true;
}

/// Appends a family's listeners, or nothing at all.
std::expected<void, DumpError> SocketDiag::dump(std::uint8_t family, std::vector<Listener> &listeners) {
    constexpr int tries = 3;
    const std::size_t before = listeners.size();
    for (int attempt = 1;; ++attempt) {
        const auto state = dumpOnce(family, listeners);
        if (state && (*state == DumpState::done || attempt == tries))
            return {};
        listeners.resize(before);
        if (!state)
            return std::unexpected(state.error());
    }
}

std::expected<DumpState, DumpError> SocketDiag::dumpOnce(std::uint8_t family,
                                                         std::vector<Listener> &listeners) {
    if (!request(family))
        return std::unexpected(DumpError::refused);
    bool isInterrupted = false;
    for (;;) {
        sockaddr_nl sender{};
        iovec part{.iov_base = m_buffer.data(), .iov_len = m_buffer.size()};
        msghdr message{};
        message.msg_name = &sender;
        message.msg_namelen = sizeof sender;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        const ssize_t length = recvmsg(m_socket.get(), &message, 0);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0 || (message.msg_flags & MSG_TRUNC) != 0)
            return std::unexpected(length <= 0 ? DumpError::refused : DumpError::malformed);
        if (sender.nl_pid != 0)
            continue; // not the kernel
        const auto state =
            parseSocketDiag({m_buffer.data(), static_cast<std::size_t>(length)}, m_sequence, listeners);
        if (!state)
            return state;
        isInterrupted = isInterrupted || *state == DumpState::interrupted;
        if (*state != DumpState::more)
            return isInterrupted ? DumpState::interrupted : DumpState::done;
    }
}

bool SocketDiag::request(std::uint8_t family) {
    struct {
        nlmsghdr header;
        inet_diag_req_v2 question;
    } message{};
    message.header.nlmsg_len = sizeof message;
    message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    message.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    message.header.nlmsg_seq = ++m_sequence;
    message.question.sdiag_family = family;
    message.question.sdiag_protocol = IPPROTO_TCP;
    message.question.idiag_states = listenState;
    ssize_t sent = 0;
    do
        sent = send(m_socket.get(), &message, sizeof message, 0);
    while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(sizeof message);
}

} // namespace tarnvale
