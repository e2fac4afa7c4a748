#include "store/ChangeCounter.h"
#include "store/StoreTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char *address = "https://deft-words.trycloudflare.com";

class TunnelsTest : public StoreTest {
protected:
    TunnelsTest() {
        addServer(42, 3000);
        world.tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    }

    FakeRunningTool &share() {
        store->share(record(3000));
        return *world.tools.started.back();
    }
};

TEST_F(TunnelsTest, sharingStartsTheTool) {
    start();
    share();
    ASSERT_THAT(world.tools.started, SizeIs(1));
    EXPECT_EQ(world.tools.started[0]->path, "/usr/bin/cloudflared");
    EXPECT_THAT(world.tools.started[0]->arguments,
                ElementsAre("tunnel", "--no-autoupdate", "--url", "http://localhost:3000"));
    ASSERT_THAT(store->tunnels(), SizeIs(1));
    EXPECT_EQ(store->tunnels().at(3000).url, std::nullopt);
    EXPECT_EQ(world.notifications.requests, 1);
    EXPECT_EQ(store->tunnelTool(), TunnelTool::cloudflared);
}

TEST_F(TunnelsTest, aSharedPortIsNotSharedTwice) {
    start();
    share();
    store->share(record(3000));
    EXPECT_THAT(world.tools.started, SizeIs(1));
}

TEST_F(TunnelsTest, whatIsNoWebsiteIsNotShared) {
    answers = {{3000, {Health::unknown(), {}}}};
    start();
    store->setMenuOpen(true);
    scan();
    store->share(record(3000));
    EXPECT_THAT(world.tools.started, IsEmpty());
    EXPECT_EQ(error(), "");
}

TEST_F(TunnelsTest, withoutAToolThatIsSaid) {
    world.tools.installed.clear();
    start();
    store->share(record(3000));
    EXPECT_EQ(error(), "Install cloudflared (brew install cloudflared) or ngrok to share a port.");
    EXPECT_EQ(store->tunnelTool(), std::nullopt);
}

TEST_F(TunnelsTest, aToolThatCannotStartIsExplained) {
    world.tools.refusal = "Permission denied";
    start();
    store->share(record(3000));
    EXPECT_EQ(error(), "Couldn't start cloudflared: Permission denied");
    EXPECT_THAT(store->tunnels(), IsEmpty());
}

TEST_F(TunnelsTest, theAddressIsCopiedAndTold) {
    start();
    FakeRunningTool &tool = share();
    tool.write("Requesting new quick Tunnel\n");
    EXPECT_THAT(world.clipboard.texts, IsEmpty());
    tool.write(std::string("INF |  ") + address + "  |\n");
    EXPECT_EQ(store->tunnels().at(3000).url, address);
    EXPECT_THAT(world.clipboard.texts, ElementsAre(address));
    EXPECT_THAT(world.notifications.posted,
                ElementsAre(Notification{
                    .title = "Port 3000 is public",
                    .body = std::string(address) + " — copied to the clipboard.",
                    .category = "tunnelReady",
                    .payload = NotificationPayload{.port = 3000, .args = {}, .cwd = {}, .url = address}}));
    tool.write(std::string(address) + " https://other.ngrok.app\n");
    EXPECT_THAT(world.notifications.posted, SizeIs(1)) << "only the first counts";
    store->copyPublicURL(3000);
    EXPECT_THAT(world.clipboard.texts, SizeIs(2));
}

TEST_F(TunnelsTest, anAddressMayComeInPieces) {
    start();
    FakeRunningTool &tool = share();
    for (const char c : std::string("x ") + address + "\n")
        tool.write(std::string(1, c));
    EXPECT_EQ(store->tunnels().at(3000).url, address);
    EXPECT_THAT(world.notifications.posted, SizeIs(1));
}

TEST_F(TunnelsTest, onlyTheEndOfTheOutputIsKept) {
    start();
    FakeRunningTool &tool = share();
    tool.write(std::string(address) + std::string(4000, 'x'));
    EXPECT_EQ(store->tunnels().at(3000).url, std::nullopt);
    std::string euros;
    for (int i = 0; i < 5000; ++i)
        euros += "€";
    tool.write(euros);
    EXPECT_EQ(store->tunnels().at(3000).output.size(), 4000u * 3) << "4000 characters, not bytes";
}

TEST_F(TunnelsTest, aToolThatFailsIsQuoted) {
    start();
    share().write("one\nERR quota reached\n\n");
    world.tools.started.back()->end();
    EXPECT_EQ(error(), "cloudflared couldn't share port 3000: ERR quota reached");
    EXPECT_THAT(store->tunnels(), IsEmpty());
    share();
    EXPECT_EQ(error(), "");
    world.tools.started.back()->end();
    EXPECT_EQ(error(), "cloudflared couldn't share port 3000: exited");
}

TEST_F(TunnelsTest, aTunnelThatWorkedEndsQuietly) {
    start();
    FakeRunningTool &tool = share();
    tool.write(address);
    tool.end();
    EXPECT_THAT(store->tunnels(), IsEmpty());
    EXPECT_EQ(error(), "");
}

TEST_F(TunnelsTest, aStoppedTunnelLeavesTheNextOneAlone) {
    start();
    FakeRunningTool &old = share();
    store->stopSharing(3000);
    EXPECT_TRUE(old.isTerminated);
    EXPECT_THAT(store->tunnels(), IsEmpty());
    FakeRunningTool &fresh = share();
    old.write(address);
    old.end();
    ASSERT_THAT(store->tunnels(), SizeIs(1));
    EXPECT_EQ(store->tunnels().at(3000).url, std::nullopt);
    EXPECT_FALSE(fresh.isTerminated);
    EXPECT_EQ(error(), "");
    store->stopSharing(9999);
}

TEST_F(TunnelsTest, aTunnelOutlivesItsServer) {
    start();
    share();
    world.machine.end(42);
    scan();
    EXPECT_THAT(store->tunnels(), SizeIs(1));
}

TEST_F(TunnelsTest, theToolsEndWithTheStore) {
    start();
    const FakeRunningTool &tool = share();
    store.reset();
    EXPECT_TRUE(tool.isTerminated);
    tool.write("late output");
    tool.end();
}

TEST_F(TunnelsTest, everyStepIsTold) {
    start();
    const ChangeCounter changes(store.get(), &PortStore::tunnelsChanged);
    FakeRunningTool &tool = share();
    tool.write(address);
    tool.end();
    EXPECT_EQ(changes.count(), 3);
}

} // namespace
} // namespace tarnvale
