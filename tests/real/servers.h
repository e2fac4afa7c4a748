#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/ListeningPort.h"
#include "discovery/Machine.h"
#include "real/RealProcess.h"
#include "support/runProgram.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// A port that the kernel chose and gives to nobody else while this object lives.
///
/// It is kept by a socket that is bound and never listens. A server that sets SO_REUSEADDR, as all of them
/// do, can listen there all the same.
class ReservedPort {
public:
    ReservedPort();

    [[nodiscard]] std::uint16_t number() const { return m_number; }
    [[nodiscard]] std::string text() const { return std::to_string(m_number); }

private:
    FileDescriptor m_socket;
    std::uint16_t m_number = 0;
};

/// Where a socket of the test's own listens.
enum class Address : std::uint8_t {
    loopback,   ///< 127.0.0.1
    everywhere, ///< 0.0.0.0
};

/// A listening socket on `port` that others may share (SO_REUSEPORT).
[[nodiscard]] FileDescriptor listenOn(std::uint16_t port, Address address = Address::loopback);

/// How many sockets listen on `port`, by the kernel's tables.
[[nodiscard]] std::size_t listenerCount(std::uint16_t port);

/// Waits until at least `count` sockets listen on `port`; whether they do.
[[nodiscard]] bool awaitListeners(std::uint16_t port, std::size_t count = 1);

/// The body of what `port` on 127.0.0.1 answers to a request for `path`; nothing when it doesn't answer in
/// time.
[[nodiscard]] std::optional<std::string> httpGet(std::uint16_t port, const std::string &path = "/");

/// This machine has IPv6 on its loopback.
[[nodiscard]] bool hasIPv6();

/// The records of one scan that are on `port`.
[[nodiscard]] std::vector<ListeningPort> scanPort(Machine &machine, std::uint16_t port);

/// The same of a machine made for it.
[[nodiscard]] std::vector<ListeningPort> scanPort(std::uint16_t port);

/// Runs the built program with these words.
[[nodiscard]] ProgramRun tarnctl(const std::vector<std::string> &words,
                                 std::optional<int> output = std::nullopt);

/// The lines of a printed table that are about `port`.
[[nodiscard]] std::vector<std::string> rowsOf(const std::string &table, std::uint16_t port);

} // namespace tarnvale
