#include "probes/chooseLanAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <net/if.h>

namespace tarnvale {
namespace {

constexpr unsigned up = IFF_UP | IFF_BROADCAST | IFF_RUNNING;

InterfaceAddress on(const std::string &name, const std::string &address,
                    std::optional<std::uint32_t> metric = std::nullopt) {
    return {.name = name, .address = address, .flags = up, .defaultRouteMetric = metric};
}

TEST(PreferredByNameTest, theFirstCardWinsWhereverItStands) {
    EXPECT_EQ(preferredByName({on("en7", "10.0.0.7"), on("en0", "10.0.0.1")}), "10.0.0.1");
    EXPECT_EQ(preferredByName({on("utun3", "10.8.0.2"), on("en5", "10.0.0.5")}), "10.0.0.5");
    EXPECT_EQ(preferredByName({on("en01", "10.0.0.1"), on("en5", "10.0.0.5")}), "10.0.0.1");
}

TEST(PreferredByNameTest, kindsHaveAnOrder) {
    const auto wireless = on("wlan0", "10.0.0.3");
    const auto wired = on("eth0", "10.0.0.2");
    EXPECT_EQ(preferredByName({wireless, wired, on("enp1s0", "10.0.0.1")}), "10.0.0.1");
    EXPECT_EQ(preferredByName({wireless, wired}), "10.0.0.2");
    EXPECT_EQ(preferredByName({on("usb0", "10.0.0.9"), wireless}), "10.0.0.3");
}

TEST(PreferredByNameTest, atLastTheFirstOfAll) {
    EXPECT_EQ(preferredByName({on("utun3", "10.8.0.2")}), "10.8.0.2");
    EXPECT_EQ(preferredByName({on("x1", "10.0.0.1"), on("x0", "10.0.0.2")}), "10.0.0.1");
    EXPECT_EQ(preferredByName({}), std::nullopt);
}

TEST(PreferredByNameTest, ofTwoAddressesTheFirstIsUsed) {
    EXPECT_EQ(preferredByName({on("en0", "10.0.0.1"), on("en0", "10.0.0.2")}), "10.0.0.1");
}

TEST(ReachableAddressesTest, onlyWhatOthersCanUse) {
    const std::vector<InterfaceAddress> all{
        {.name = "lo", .address = "127.0.0.1", .flags = up | IFF_LOOPBACK},
        {.name = "eth1", .address = "10.0.0.1", .flags = IFF_BROADCAST},
        on("en0", "169.254.3.4"),
        on("eth0", "192.168.1.5"),
        on("eth2", "169.25.4.1"),
    };
    const auto reachable = reachableAddresses(all);
    ASSERT_EQ(reachable.size(), 2u);
    EXPECT_EQ(reachable[0].name, "eth0");
    EXPECT_EQ(reachable[1].name, "eth2");
}

TEST(ChooseLanAddressTest, withoutANetworkThereIsNone) {
    EXPECT_EQ(chooseLanAddress({}), std::nullopt);
    EXPECT_EQ(chooseLanAddress({{.name = "lo", .address = "127.0.0.1", .flags = up | IFF_LOOPBACK}}),
              std::nullopt)
        << "loopback, not even at last";
    EXPECT_EQ(chooseLanAddress({on("en0", "169.254.1.1")}), std::nullopt);
    EXPECT_EQ(chooseLanAddress({on("en0", "169.254.1.1"), on("wlan0", "10.0.0.3")}), "10.0.0.3");
}

TEST(ChooseLanAddressTest, theBestDefaultRouteDecidesAmongCards) {
    EXPECT_EQ(chooseLanAddress({on("enp1s0", "10.0.0.1"), on("wlp2s0", "10.0.1.1", 600)}), "10.0.1.1");
    EXPECT_EQ(chooseLanAddress({on("wlp2s0", "10.0.1.1", 600), on("enp1s0", "10.0.0.1", 100)}), "10.0.0.1");
    EXPECT_EQ(chooseLanAddress({on("wlp2s0", "10.0.1.1", 0), on("enp1s0", "10.0.0.1", 0)}), "10.0.0.1");
    EXPECT_EQ(chooseLanAddress({on("wlp2s0", "10.0.1.1"), on("enp1s0", "10.0.0.1")}), "10.0.0.1");
}

TEST(ChooseLanAddressTest, aTunnelNeverStandsForACard) {
    for (const char *name :
         {"docker0", "br-1a2b3c", "veth12", "virbr0", "tun0", "tap1", "wg0", "cni0", "flannel.1", "lxcbr0",
          "podman0", "utun3", "tailscale0", "vboxnet0", "vmnet8", "zt7nnig26", "ppp0"}) {
        const InterfaceAddress tunnel = on(name, "10.8.0.2", 0);
        EXPECT_EQ(chooseLanAddress({tunnel, on("wlan0", "10.0.0.3")}), "10.0.0.3") << name;
        EXPECT_EQ(chooseLanAddress({tunnel, on("usb0", "10.0.0.9")}), "10.0.0.9") << name;
        EXPECT_EQ(chooseLanAddress({tunnel}), "10.8.0.2") << name << ", at last";
    }
}

TEST(ChooseLanAddressTest, aLinkBetweenTwoMachinesIsATunnelToo) {
    InterfaceAddress link = on("corp", "10.8.0.2", 0);
    link.flags |= IFF_POINTOPOINT;
    EXPECT_EQ(chooseLanAddress({link, on("usb0", "10.0.0.9")}), "10.0.0.9");
}

TEST(ChooseLanAddressTest, aBridgeOfTheUsersOwnCountsWithoutACard) {
    EXPECT_EQ(chooseLanAddress({on("docker0", "172.17.0.1"), on("br0", "10.0.0.1", 0)}), "10.0.0.1");
    EXPECT_EQ(chooseLanAddress({on("usb0", "10.0.0.9"), on("bond0", "10.0.0.1", 0)}), "10.0.0.1");
}

} // namespace
} // namespace tarnvale
