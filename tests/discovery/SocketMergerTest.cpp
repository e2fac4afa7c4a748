#include "discovery/SocketMerger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SocketMergerTest, socketsOfOneCommandAndPortBecomeOneRecord) {
    SocketMerger merger;
    merger.add(20, "nginx", 80, false);
    merger.add(10, "nginx", 80, true);
    merger.add(30, "nginx", 80, false);
    EXPECT_THAT(merger.take(),
                ElementsAre(ListeningPort{.pid = 10, .command = "nginx", .port = 80, .isExposed = true}));
}

TEST(SocketMergerTest, commandsThatContainAColonStayApart) {
    SocketMerger merger;
    merger.add(10, "a:1", 2, false);
    merger.add(11, "a", 12, false);
    merger.add(12, "a:1:2", 2, false);
    EXPECT_EQ(merger.take().size(), 3u);
}

TEST(SocketMergerTest, recordsAreSortedByPortThenPidThenCommand) {
    SocketMerger merger;
    merger.add(10, "node", 3000, false);
    merger.add(30, "node", 80, false);
    merger.add(20, "b", 80, false);
    merger.add(20, "a", 80, false);
    merger.add(5, "node", -1, false);
    std::vector<std::string> order;
    for (const ListeningPort &port : merger.take())
        order.push_back(port.id() + port.command);
    EXPECT_THAT(order, ElementsAre("5:-1node", "20:80a", "20:80b", "30:80node", "10:3000node"));
}

TEST(SocketMergerTest, theServiceComesFromTheLowestPid) {
    SocketMerger merger;
    merger.add(20, "systemd", 631, false, "cups.socket", ServiceManager::systemd);
    merger.add(10, "systemd", 631, false, "other.socket", ServiceManager::systemdUser);
    merger.add(30, "systemd", 631, false);
    const auto ports = merger.take();
    ASSERT_EQ(ports.size(), 1u);
    EXPECT_EQ(ports[0].service, "other.socket");
    EXPECT_EQ(ports[0].serviceManager, ServiceManager::systemdUser);
}

TEST(SocketMergerTest, takingEmptiesTheMerger) {
    SocketMerger merger;
    merger.add(10, "node", 3000, false);
    EXPECT_EQ(merger.take().size(), 1u);
    EXPECT_THAT(merger.take(), IsEmpty());
}

} // namespace
} // namespace tarnvale
