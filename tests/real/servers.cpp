#include "real/servers.h"

#include "discovery/scanListeningPorts.h"
#include "discovery/text.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace tarnvale {

namespace {

void enable(const FileDescriptor &socket, int option) {
    const int on = 1;
    setsockopt(socket.get(), SOL_SOCKET, option, &on, sizeof on);
}

sockaddr_in addressOf(std::uint32_t host, std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(host);
    address.sin_port = htons(port);
    return address;
}

/// The socket calls take any kind of address through one pointer type.
template<typename Address> const sockaddr *generic(const Address &address) {
    return reinterpret_cast<const sockaddr *>(&address);
}

std::uint16_t portOf(const FileDescriptor &socket) {
    sockaddr_in6 address{};
    socklen_t size = sizeof address;
    if (getsockname(socket.get(), reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return 0;
    return ntohs(address.sin6_port); // at the same place for both families
}

// Sample row: "   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 …", 0A being LISTEN
// (proc(5)).
std::size_t countIn(const char *table, std::string_view port) {
    std::size_t count = 0;
    const std::string content = readFile(table);
    for (const std::string_view line : nonEmptyLines(content)) {
        const auto fields = words(line, 4);
        if (fields.size() == 4 && fields[3] == "0A" && fields[1].ends_with(port))
            ++count;
    }
    return count;
}

} // namespace

ReservedPort::ReservedPort() {
    sockaddr_in6 both{};
    both.sin6_family = AF_INET6;
    m_socket = FileDescriptor(socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0));
    enable(m_socket, SO_REUSEADDR);
    if (!m_socket.isOpen() || bind(m_socket.get(), generic(both), sizeof both) != 0) {
        const sockaddr_in any = addressOf(INADDR_ANY, 0);
        m_socket = FileDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        enable(m_socket, SO_REUSEADDR);
        if (bind(m_socket.get(), generic(any), sizeof any) != 0)
            throw std::runtime_error("no port is free");
    }
    m_number = portOf(m_socket);
}

FileDescriptor listenOn(std::uint16_t port, Address address) {
    FileDescriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    enable(listener, SO_REUSEADDR);
    enable(listener, SO_REUSEPORT);
    const sockaddr_in at = addressOf(address == Address::loopback ? INADDR_LOOPBACK : INADDR_ANY, port);
    if (bind(listener.get(), generic(at), sizeof at) != 0 || listen(listener.get(), 8) != 0)
        throw std::runtime_error("can't listen on the port");
    return listener;
}

std::size_t listenerCount(std::uint16_t port) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string ending = ":";
    for (const unsigned divisor : {0x1000u, 0x100u, 0x10u, 1u})
        ending += digits[port / divisor % 16];
    return countIn("/proc/self/net/tcp", ending) + countIn("/proc/self/net/tcp6", ending);
}

bool awaitListeners(std::uint16_t port, std::size_t count) {
    return eventually([&] { return listenerCount(port) >= count; });
}

std::optional<std::string> httpGet(std::uint16_t port, const std::string &path) {
    const FileDescriptor client(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{.tv_sec = 10, .tv_usec = 0};
    setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const sockaddr_in server = addressOf(INADDR_LOOPBACK, port);
    const std::string request = "GET " + path + " HTTP/1.0\r\nHost: localhost\r\n\r\n";
    if (connect(client.get(), generic(server), sizeof server) != 0 ||
        send(client.get(), request.data(), request.size(), MSG_NOSIGNAL) < 0)
        return std::nullopt;
    std::string answer;
    char piece[4096];
    for (ssize_t count = 0; (count = recv(client.get(), piece, sizeof piece, 0)) > 0;)
        answer.append(piece, static_cast<std::size_t>(count));
    const std::size_t body = answer.find("\r\n\r\n");
    return body == answer.npos ? std::nullopt : std::optional(answer.substr(body + 4));
}

bool hasIPv6() {
    const FileDescriptor probe(socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in6 loopback{};
    loopback.sin6_family = AF_INET6;
    loopback.sin6_addr = IN6ADDR_LOOPBACK_INIT;
    return probe.isOpen() && bind(probe.get(), generic(loopback), sizeof loopback) == 0;
}

std::vector<ListeningPort> scanPort(Machine &machine, std::uint16_t port) {
    std::vector<ListeningPort> ports = scanListeningPorts(machine);
    std::erase_if(ports, [&](const ListeningPort &record) { return record.port != port; });
    return ports;
}

std::vector<ListeningPort> scanPort(std::uint16_t port) {
    return scanPort(*makeDefaultMachine(), port);
}

ProgramRun tarnctl(const std::vector<std::string> &words, std::optional<int> output) {
    std::vector<std::string> arguments{TARNVALE_EXECUTABLE};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return runProgram(arguments, output);
}

std::vector<std::string> rowsOf(const std::string &table, std::uint16_t port) {
    std::vector<std::string> rows;
    for (const std::string_view line : nonEmptyLines(table))
        if (line.starts_with(":" + std::to_string(port) + " "))
            rows.emplace_back(line);
    return rows;
}

} // namespace tarnvale
