#include "discovery/linux/addresses.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

std::array<std::uint8_t, 16> bytesOf(const char *address) {
    std::array<std::uint8_t, 16> bytes{};
    EXPECT_EQ(inet_pton(AF_INET6, address, bytes.data()), 1) << address;
    return bytes;
}

TEST(AddressesTest, everyAddressThatBeginsWith127IsLoopback) {
    EXPECT_TRUE(isLoopbackIPv4(127));
    for (const int first : {0, 1, 10, 126, 128, 192, 255})
        EXPECT_FALSE(isLoopbackIPv4(static_cast<std::uint8_t>(first))) << first;
}

TEST(AddressesTest, loopbackOfIPv6IsOneAddressAndTheMappedOnes) {
    for (const char *address : {"::1", "::ffff:127.0.0.1", "::ffff:127.1.2.3"})
        EXPECT_TRUE(isLoopbackIPv6(bytesOf(address))) << address;
    for (const char *address : {"::", "::2", "1::1", "::ffff:192.168.1.1", "::ffff:0.0.0.0", "::127.0.0.1",
                                "::fffe:127.0.0.1", "fe80::1", "64:ff9b::127.0.0.1"})
        EXPECT_FALSE(isLoopbackIPv6(bytesOf(address))) << address;
}

} // namespace
} // namespace tarnvale
