#include "probes/LanAddress.h"

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QNetworkInterface>

namespace tarnvale {
namespace {

TEST(LanAddressTest, itIsAnAddressOfThisMachine) {
    const auto address = lanAddress();
    if (!address)
        GTEST_SKIP() << "no network here";
    const QHostAddress found(QString::fromStdString(*address));
    EXPECT_EQ(found.protocol(), QAbstractSocket::IPv4Protocol);
    EXPECT_FALSE(found.isLoopback());
    EXPECT_TRUE(QNetworkInterface::allAddresses().contains(found)) << *address;
}

TEST(LanAddressTest, theUrlIsOfThatAddress) {
    const auto address = lanAddress();
    const auto url = lanURL(5173);
    EXPECT_EQ(url.has_value(), address.has_value());
    if (!url)
        GTEST_SKIP() << "no network here";
    EXPECT_EQ(*url, "http://" + *address + ":5173");
}

} // namespace
} // namespace tarnvale
