#include "discovery/linux/parseProcNetTcp.h"

#include "discovery/linux/addresses.h"
#include "discovery/text.h"

#include <array>
#include <charconv>
#include <cstring>

namespace tarnvale {

namespace {

template<typename Number> std::optional<Number> parseHex(std::string_view text) {
    Number number{};
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    if (error != std::errc{} || stop != end)
        return std::nullopt;
    return number;
}

/// The table prints an address as 32-bit words in the byte order of the machine.
std::optional<bool> isLoopbackAddress(std::string_view hex) {
    constexpr std::size_t wordDigits = 8;
    std::array<std::uint8_t, 16> address{};
    if (hex.size() != wordDigits && hex.size() != 4 * wordDigits)
        return std::nullopt;
    for (std::size_t i = 0; i < hex.size() / wordDigits; ++i) {
        const auto word = parseHex<std::uint32_t>(hex.substr(i * wordDigits, wordDigits));
        if (!word)
            return std::nullopt;
        std::memcpy(address.data() + i * sizeof(*word), &*word, sizeof(*word));
    }
    return hex.size() == wordDigits ? isLoopbackIPv4(address[0]) : isLoopbackIPv6(address);
}

std::optional<Listener> parseRow(std::string_view row) {
    // sl, local_address, rem_address, st, queues, timer, retransmits, uid, timeout, inode, references: the
    // last shows that the inode isn't cut
    const auto fields = words(row, 11);
    if (fields.size() < 11 || fields[3] != "0A")
        return std::nullopt;
    const auto local = split(fields[1], ':');
    if (local.size() != 2)
        return std::nullopt;
    const auto isLoopback = isLoopbackAddress(local[0]);
    const auto port = parseHex<std::uint16_t>(local[1]);
    const auto inode = parseInteger<std::uint64_t>(fields[9]);
    if (!isLoopback || !port || !inode)
        return std::nullopt;
    return Listener{.port = *port, .isLoopback = *isLoopback, .inode = *inode, .cgroup = std::nullopt};
}

} // namespace

// Sample row, 127.0.0.1:8080:
//   "   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 31337 1 …"
std::vector<Listener> parseProcNetTcp(std::string_view table) {
    std::vector<Listener> listeners;
    for (const std::string_view row : nonEmptyLines(table))
        if (const auto listener = parseRow(row))
            listeners.push_back(*listener);
    return listeners;
}

} // namespace tarnvale
