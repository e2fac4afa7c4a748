#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace tarnvale {

/// 127.0.0.0/8 (RFC 1122, 3.2.1.3), by the address's first byte.
[[nodiscard]] constexpr bool isLoopbackIPv4(std::uint8_t firstByte) {
    return firstByte == 127;
}

/// ::1 (RFC 4291, 2.5.3), or a loopback IPv4 address mapped into IPv6 (2.5.5.2); bytes in network order.
[[nodiscard]] constexpr bool isLoopbackIPv6(const std::array<std::uint8_t, 16> &address) {
    constexpr std::array<std::uint8_t, 16> loopback{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    constexpr std::array<std::uint8_t, 12> mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    return address == loopback ||
           (std::equal(mapped.begin(), mapped.end(), address.begin()) && isLoopbackIPv4(address[12]));
}

} // namespace tarnvale
